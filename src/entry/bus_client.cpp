#include "entry/bus_client.h"

#include "base/uuid.h"
#include "entry/desktop_names.h"
#include "entry/session.h"

#include <gio/gio.h>

#include <memory>

namespace velarc {

namespace {

constexpr const char *kTokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char *kStartupVariable = "DESKTOP_STARTUP_ID";

constexpr int kTimeOutMs = 25'000;

constexpr QLatin1StringView kTextType = "text/plain;charset=utf-8"_L1;
constexpr QLatin1StringView kPictureType = "image/png"_L1;

struct Unreference
{
    void operator()(GDBusConnection *connection) const { g_object_unref(connection); }
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
    void operator()(GError *error) const { g_error_free(error); }
};
template <typename Type> using Held = std::unique_ptr<Type, Unreference>;

Held<GDBusConnection> sessionBus()
{
    if (!hasSessionBus()) {
        return nullptr;
    }
    Held<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus) {
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
    return bus;
}

// Whether the error says that nobody has the name, or has it no longer, and that nobody could be
// started for it.
bool saysNobodyIsThere(int busError)
{
    switch (busError) {
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_NO_REPLY: // it left the bus; one that only keeps silent is timed out
    case G_DBUS_ERROR_UNKNOWN_OBJECT: // it is leaving: the name is given back before the object
    case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
    case G_DBUS_ERROR_SPAWN_FORK_FAILED:
    case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
    case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
    case G_DBUS_ERROR_SPAWN_FAILED:
    case G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND:
    case G_DBUS_ERROR_SPAWN_FILE_INVALID:
        return true;
    default: // of a foreign enum that has many more
        return false;
    }
}

WindowReply replyFor(const GError &failure)
{
    const bool nobodyIsThere = failure.domain == G_DBUS_ERROR && saysNobodyIsThere(failure.code);
    return nobodyIsThere ? WindowReply::NoWindow : WindowReply::Failed;
}

struct Method
{
    QLatin1StringView interface;
    const char *name;
};

struct CallOutcome
{
    WindowReply reply = WindowReply::NoBus;
    Held<GVariant> results; // where it is done
    QString complaint; // of the window, where it failed
};

QString complaintIn(GError &failure)
{
    g_dbus_error_strip_remote_error(&failure);
    return QString::fromUtf8(failure.message);
}

// Takes over the arguments, which are floating.
CallOutcome ask(Method method, GVariant *arguments, WindowStart start)
{
    const Held<GVariant> held(g_variant_ref_sink(arguments));
    const Held<GDBusConnection> bus = sessionBus();
    if (!bus) {
        return {};
    }
    const GDBusCallFlags flags =
        start == WindowStart::Never ? G_DBUS_CALL_FLAGS_NO_AUTO_START : G_DBUS_CALL_FLAGS_NONE;
    GError *error = nullptr;
    Held<GVariant> results(g_dbus_connection_call_sync(bus.get(), kApplicationId.data(),
        kWindowPath.data(), method.interface.data(), method.name, held.get(), nullptr, flags,
        kTimeOutMs, nullptr, &error));
    const Held<GError> failure(error);
    if (failure) {
        return {replyFor(*failure), nullptr, complaintIn(*failure)};
    }
    return {WindowReply::Done, std::move(results), QString()};
}

WindowReply call(Method method, GVariant *arguments, WindowStart start)
{
    return ask(method, arguments, start).reply;
}

GVariant *textVariant(const QString &text)
{
    return g_variant_new_string(text.toUtf8().constData());
}

void addPlatformData(GVariantBuilder &builder, const char *key, const QString &value)
{
    if (!value.isEmpty()) {
        g_variant_builder_add(&builder, "{sv}", key, textVariant(value));
    }
}

GVariant *platformData(const ActivationContext &context)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
    addPlatformData(builder, "activation-token", context.activationToken);
    addPlatformData(builder, "desktop-startup-id", context.startupId);
    return g_variant_builder_end(&builder);
}

QString takenFromEnvironment(const char *variable)
{
    const QString value = qEnvironmentVariable(variable);
    qunsetenv(variable);
    return value;
}

} // namespace

ActivationContext ActivationContext::taken()
{
    return {
        takenFromEnvironment("XDG_ACTIVATION_TOKEN"), takenFromEnvironment("DESKTOP_STARTUP_ID")};
}

void ActivationContext::giveBack() const
{
    if (!activationToken.isEmpty()) {
        qputenv(kTokenVariable, activationToken.toUtf8());
    }
    if (!startupId.isEmpty()) {
        qputenv(kStartupVariable, startupId.toUtf8());
    }
}

WindowReply activateWindow(const ActivationContext &context, WindowStart start)
{
    return call({kApplicationInterface, "Activate"},
        g_variant_new("(@a{sv})", platformData(context)), start);
}

WindowReply openInWindow(
    const QStringList &addresses, const ActivationContext &context, WindowStart start)
{
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
    for (const QString &address : addresses) {
        g_variant_builder_add_value(&list, textVariant(address));
    }
    GVariant *arguments =
        g_variant_new("(@as@a{sv})", g_variant_builder_end(&list), platformData(context));
    return call({kApplicationInterface, "Open"}, arguments, start);
}

WindowReply selectInWindow(const QUuid &action, const ActivationContext &context, WindowStart start)
{
    GVariantBuilder parameters;
    g_variant_builder_init(&parameters, G_VARIANT_TYPE("av"));
    g_variant_builder_add(&parameters, "v", textVariant(uuidText(action)));
    GVariant *arguments = g_variant_new("(s@av@a{sv})", kSelectAction.data(),
        g_variant_builder_end(&parameters), platformData(context));
    return call({kApplicationInterface, "ActivateAction"}, arguments, start);
}

ImportReply importInWindow(const QByteArray &json)
{
    const CallOutcome outcome = ask(
        {kWindowInterface, "Import"}, g_variant_new("(s)", json.constData()), WindowStart::Never);
    if (!outcome.results) {
        return {outcome.reply, outcome.complaint};
    }
    if (!g_variant_is_of_type(outcome.results.get(), G_VARIANT_TYPE("(s)"))) {
        return {WindowReply::Failed, QString()};
    }
    const char *summary = nullptr;
    g_variant_get(outcome.results.get(), "(&s)", &summary);
    return {WindowReply::Done, QString::fromUtf8(summary)};
}

WindowReply copyInWindow(const CopiedThing &thing)
{
    const bool isText = thing.kind == CopiedThing::Kind::Text;
    GVariant *bytes = g_variant_new_fixed_array(
        G_VARIANT_TYPE_BYTE, thing.bytes.constData(), static_cast<gsize>(thing.bytes.size()), 1);
    GVariant *arguments =
        g_variant_new("(s@ay)", isText ? kTextType.data() : kPictureType.data(), bytes);
    return call({kWindowInterface, "Copy"}, arguments, WindowStart::Never);
}

} // namespace velarc
