#include "engines/keychain_items.h"

#include "base/async.h"
#include "base/errors.h"
#include "engines/credential_store.h"

#include <libsecret/secret.h>

#include <array>
#include <functional>

namespace velarc {

namespace {

constexpr const char *kSecretService = "org.freedesktop.secrets";

// They own the name above too, once they run, but no bus starts them under it.
constexpr std::array kWalletDaemons{"org.kde.kwalletd6", "org.kde.kwalletd5"};

// From the start of a wallet daemon until it speaks for the Secret Service.
constexpr unsigned kWalletStartMilliseconds = 2000;

constexpr const char *kLabel = "Velarc API key";
constexpr const char *kContentType = "text/plain";

constexpr qint32 kSecretStatus = 100;
constexpr qint32 kBusStatus = 200;
constexpr qint32 kInputOutputStatus = 400;
constexpr qint32 kOtherStatus = 999;

const SecretSchema kSchema{"com.tolmar.velarc.ApiKey", SECRET_SCHEMA_NONE,
    {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
        {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
    0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

qint32 statusOf(const GError &error)
{
    if (error.domain == SECRET_ERROR) {
        return kSecretStatus + error.code;
    }
    if (error.domain == G_DBUS_ERROR) {
        return kBusStatus + error.code;
    }
    return error.domain == G_IO_ERROR ? kInputOutputStatus + error.code : kOtherStatus;
}

template <auto release> struct Releasing
{
    template <typename Type> void operator()(Type *released) const { release(released); }
};
template <typename Type> using ObjectPointer = std::unique_ptr<Type, Releasing<g_object_unref>>;
using VariantPointer = std::unique_ptr<GVariant, Releasing<g_variant_unref>>;
using ValuePointer = std::unique_ptr<SecretValue, Releasing<secret_value_unref>>;
using AttributesPointer = std::unique_ptr<GHashTable, Releasing<g_hash_table_unref>>;
using SourcePointer = std::unique_ptr<GSource, Releasing<g_source_unref>>;

void releaseItems(GList *items)
{
    g_list_free_full(items, g_object_unref);
}
using ItemsPointer = std::unique_ptr<GList, Releasing<releaseItems>>;

// Where a call of the library leaves its error.
class Failure
{
public:
    Failure() = default;
    ~Failure() { g_clear_error(&m_error); }
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

    [[nodiscard]] GError **out() { return &m_error; }
    [[nodiscard]] bool saysThatNobodyServes() const
    {
        return g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN)
            || g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER);
    }
    void throwIfSet() const
    {
        if (m_error != nullptr) {
            throw CredentialStoreError::keychain(statusOf(*m_error));
        }
    }

private:
    GError *m_error = nullptr;
};

// The library delivers signals to the main context of the thread that calls it. A worker thread has
// none but the program's, which is the window's business.
class OwnContext
{
public:
    OwnContext() : m_context(g_main_context_new())
    {
        g_main_context_push_thread_default(m_context);
    }
    ~OwnContext()
    {
        while (g_main_context_iteration(m_context, FALSE) != 0) {}
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }
    OwnContext(const OwnContext &) = delete;
    OwnContext &operator=(const OwnContext &) = delete;

    [[nodiscard]] GMainContext *get() const { return m_context; }

private:
    GMainContext *m_context;
};

// What surprises the libraries they write on standard error, which is for the program's own words.
// Other threads of the program keep their warnings.
class QuietThread
{
public:
    QuietThread()
    {
        static const bool kInstalled = install();
        isQuiet = kInstalled;
    }
    ~QuietThread() { isQuiet = false; }
    QuietThread(const QuietThread &) = delete;
    QuietThread &operator=(const QuietThread &) = delete;

private:
    static inline thread_local bool isQuiet = false;

    static bool install()
    {
        constexpr auto kAll =
            GLogLevelFlags(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL | G_LOG_FLAG_RECURSION);
        for (const char *library : {"libsecret", "GLib-GIO", "GLib-GObject", "GLib"}) {
            g_log_set_handler(
                library, kAll,
                [](const gchar *domain, GLogLevelFlags level, const gchar *text, gpointer data) {
                    if (!isQuiet) {
                        g_log_default_handler(domain, level, text, data);
                    }
                },
                nullptr);
        }
        return true;
    }
};

bool anyIsLocked(GList *items)
{
    for (const GList *item = items; item != nullptr; item = item->next) {
        if (secret_item_get_locked(SECRET_ITEM(item->data)) != 0) {
            return true;
        }
    }
    return false;
}

gboolean noteTrue(gpointer flag)
{
    *static_cast<bool *>(flag) = true;
    return G_SOURCE_CONTINUE;
}

} // namespace

struct KeychainItems::Members
{
    const QByteArray serviceName;
    const std::stop_token stop;
    const QuietThread quiet;
    const OwnContext context;
    const ObjectPointer<GCancellable> cancellable{g_cancellable_new()};
    const std::stop_callback<std::function<void()>> cancelling{
        stop, [this] { g_cancellable_cancel(cancellable.get()); }};
    ObjectPointer<GDBusConnection> bus;
    ObjectPointer<SecretService> service;

    Members(QByteArray name, std::stop_token token)
        : serviceName(std::move(name)), stop(std::move(token))
    {
    }

    // A stop shows as any failure, and some calls end on it as if nothing were there.
    void check(const Failure &failure) const
    {
        throwIfStopped(stop);
        failure.throwIfSet();
    }

    [[nodiscard]] AttributesPointer attributesOf(const QByteArray &account) const
    {
        return AttributesPointer(secret_attributes_build(
            &kSchema, "service", serviceName.constData(), "account", account.constData(), nullptr));
    }

    [[nodiscard]] ItemsPointer search(const QByteArray &account, int flags) const
    {
        Failure failure;
        ItemsPointer items(
            secret_service_search_sync(service.get(), &kSchema, attributesOf(account).get(),
                SecretSearchFlags(flags), cancellable.get(), failure.out()));
        check(failure);
        return items;
    }

    // All such items, which the user was asked to unlock.
    [[nodiscard]] ItemsPointer unlocked(const QByteArray &account) const
    {
        ItemsPointer items = search(account, SECRET_SEARCH_ALL | SECRET_SEARCH_UNLOCK);
        if (anyIsLocked(items.get())) {
            throw CredentialStoreError::keychain(kSecretStatus + SECRET_ERROR_IS_LOCKED);
        }
        return items;
    }

    [[nodiscard]] ValuePointer valueOf(const Secret &secret) const
    {
        return ValuePointer(secret_value_new(
            secret.bytes().data(), static_cast<gssize>(secret.bytes().size()), kContentType));
    }

    void update(GList *items, SecretValue *value) const
    {
        for (const GList *item = items; item != nullptr; item = item->next) {
            Failure failure;
            secret_item_set_secret_sync(
                SECRET_ITEM(item->data), value, cancellable.get(), failure.out());
            check(failure);
        }
    }

    void add(const QByteArray &account, SecretValue *value) const
    {
        Failure failure;
        secret_service_store_sync(service.get(), &kSchema, attributesOf(account).get(), nullptr,
            kLabel, value, cancellable.get(), failure.out());
        check(failure);
    }

    // --- Reaching the service --------------------------------------------------------------------

    void open(Prompting prompting)
    {
        throwIfStopped(stop);
        Failure failure;
        bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable.get(), failure.out()));
        check(failure);
        // Or the library ends the program when the bus goes.
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
        startService();
        service.reset(SECRET_SERVICE(secret_service_open_sync(secretServiceType(prompting), nullptr,
            SECRET_SERVICE_NONE, cancellable.get(), failure.out())));
        check(failure);
    }

    void startService()
    {
        Failure failure;
        start(kSecretService, failure);
        if (failure.saysThatNobodyServes() && startWalletDaemon()) {
            Failure again;
            start(kSecretService, again);
            check(again);
            return;
        }
        check(failure);
    }

    [[nodiscard]] VariantPointer askBus(
        const char *method, GVariant *arguments, const char *type, Failure &failure) const
    {
        return VariantPointer(g_dbus_connection_call_sync(bus.get(), "org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments,
            G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, -1, cancellable.get(), failure.out()));
    }

    // Has the bus start the owner of a name. True if it was started now; an owner that is there
    // already is no failure.
    bool start(const char *name, Failure &failure) const
    {
        const VariantPointer reply =
            askBus("NameHasOwner", g_variant_new("(s)", name), "(b)", failure);
        gboolean isOwned = FALSE;
        if (reply) {
            g_variant_get(reply.get(), "(b)", &isOwned);
        }
        if (!reply || isOwned != 0) {
            return false;
        }
        return askBus("StartServiceByName", g_variant_new("(su)", name, 0U), "(u)", failure)
            != nullptr;
    }

    // One that ran before has had its chance to speak for the Secret Service.
    bool startWalletDaemon()
    {
        for (const char *daemon : kWalletDaemons) {
            Failure failure;
            if (start(daemon, failure)) {
                waitForService();
                return true;
            }
            throwIfStopped(stop);
        }
        return false;
    }

    void waitForService()
    {
        bool isOver = false;
        const guint watch = g_bus_watch_name_on_connection(
            bus.get(), kSecretService, G_BUS_NAME_WATCHER_FLAGS_NONE,
            [](GDBusConnection *, const gchar *, const gchar *, gpointer over) { noteTrue(over); },
            nullptr, &isOver, nullptr);
        const SourcePointer timeout(g_timeout_source_new(kWalletStartMilliseconds));
        g_source_set_callback(timeout.get(), &noteTrue, &isOver, nullptr);
        g_source_attach(timeout.get(), context.get());
        const std::stop_callback wakeUp(stop, [this] { g_main_context_wakeup(context.get()); });
        while (!isOver && !stop.stop_requested()) {
            g_main_context_iteration(context.get(), TRUE);
        }
        g_source_destroy(timeout.get());
        g_bus_unwatch_name(watch);
        throwIfStopped(stop);
    }
};

KeychainItems::KeychainItems(QByteArray service, Prompting prompting, std::stop_token stop)
    : m_members(std::make_unique<Members>(std::move(service), std::move(stop)))
{
    m_members->open(prompting);
}

KeychainItems::~KeychainItems() = default;

std::optional<Secret> KeychainItems::read(const QByteArray &account)
{
    Failure failure;
    const ValuePointer value(secret_service_lookup_sync(m_members->service.get(), &kSchema,
        m_members->attributesOf(account).get(), m_members->cancellable.get(), failure.out()));
    m_members->check(failure);
    if (!value) {
        return std::nullopt;
    }
    gsize size = 0;
    const gchar *bytes = secret_value_get(value.get(), &size);
    return Secret(QByteArrayView(bytes, static_cast<qsizetype>(size)));
}

bool KeychainItems::contains(const QByteArray &account)
{
    return m_members->search(account, SECRET_SEARCH_NONE) != nullptr;
}

void KeychainItems::write(const QByteArray &account, const Secret &secret)
{
    const ItemsPointer items = m_members->unlocked(account);
    const ValuePointer value = m_members->valueOf(secret);
    if (items) {
        m_members->update(items.get(), value.get());
    } else {
        m_members->add(account, value.get());
    }
}

void KeychainItems::remove(const QByteArray &account)
{
    if (!m_members->unlocked(account)) {
        return;
    }
    Failure failure;
    secret_service_clear_sync(m_members->service.get(), &kSchema,
        m_members->attributesOf(account).get(), m_members->cancellable.get(), failure.out());
    m_members->check(failure);
    // The library passes over what is locked meanwhile and over what the user keeps.
    if (contains(account)) {
        throw CredentialStoreError::keychain(kSecretStatus + SECRET_ERROR_IS_LOCKED);
    }
}

} // namespace velarc
