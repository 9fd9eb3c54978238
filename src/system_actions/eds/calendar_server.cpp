#include "system_actions/eds/calendar_server.h"

#include <libecal/libecal.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace velarc {

namespace {

// Any other wait would be spent to its end, as no main loop runs here that could cut it short.
constexpr guint32 kDoNotWait = static_cast<guint32>(-1);

template <auto release> struct Releasing
{
    template <typename Type> void operator()(Type *released) const { release(released); }
};
template <typename Type> using ObjectPointer = std::unique_ptr<Type, Releasing<g_object_unref>>;
using TextPointer = std::unique_ptr<char, Releasing<g_free>>;

void releaseObjects(GSList *objects)
{
    g_slist_free_full(objects, g_object_unref);
}
using ObjectsPointer = std::unique_ptr<GSList, Releasing<releaseObjects>>;

void releaseSources(GList *sources)
{
    g_list_free_full(sources, g_object_unref);
}
using SourcesPointer = std::unique_ptr<GList, Releasing<releaseSources>>;

// One call of the server: what ends it, and how it ended.
class Call
{
public:
    explicit Call(std::stop_token stop)
        : m_cancellable(g_cancellable_new())
        , m_onStop(std::move(stop), [this] { g_cancellable_cancel(m_cancellable.get()); })
    {
    }
    ~Call() { g_clear_error(&m_error); }
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;

    [[nodiscard]] GCancellable *cancellable() const { return m_cancellable.get(); }
    [[nodiscard]] GError **error()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    [[nodiscard]] bool wasStopped() const
    {
        return g_cancellable_is_cancelled(m_cancellable.get()) != 0;
    }
    [[nodiscard]] bool saysThatNothingIsThere() const
    {
        return g_error_matches(m_error, E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND);
    }

    [[nodiscard]] ServerOutcome failure()
    {
        if (m_error == nullptr) {
            return {true, false, {}};
        }
        const bool isDenied = g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED);
        g_dbus_error_strip_remote_error(m_error);
        return {true, isDenied, QString::fromUtf8(m_error->message)};
    }

private:
    ObjectPointer<GCancellable> m_cancellable;
    std::stop_callback<std::function<void()>> m_onStop;
    GError *m_error = nullptr;
};

// The server's signals go to the context of the thread that connects; no other thread's loop, the
// window's least of all, has any business with them.
class ContextScope
{
public:
    explicit ContextScope(GMainContext *context) : m_context(context)
    {
        g_main_context_push_thread_default(m_context);
    }
    ~ContextScope()
    {
        while (g_main_context_iteration(m_context, FALSE) != 0) {}
        g_main_context_pop_thread_default(m_context);
    }
    ContextScope(const ContextScope &) = delete;
    ContextScope &operator=(const ContextScope &) = delete;

private:
    GMainContext *m_context;
};

ServerOutcome readOnly()
{
    return {
        true, false, QString::fromUtf8(e_client_error_to_string(E_CLIENT_ERROR_PERMISSION_DENIED))};
}

void append(QList<QByteArray> &texts, ICalComponent *component)
{
    if (component != nullptr) {
        const TextPointer text(i_cal_component_as_ical_string(component));
        texts.append(QByteArray(text.get()));
    }
}

bool addZones(ECalClient *client, ICalComponent *file, Call &call)
{
    ObjectPointer<ICalComponent> found(
        i_cal_component_get_first_component(file, I_CAL_VTIMEZONE_COMPONENT));
    for (; found;
         found.reset(i_cal_component_get_next_component(file, I_CAL_VTIMEZONE_COMPONENT))) {
        const ObjectPointer<ICalTimezone> zone(i_cal_timezone_new());
        const bool isZone =
            i_cal_timezone_set_component(zone.get(), i_cal_component_clone(found.get())) != 0;
        if (isZone
            && e_cal_client_add_timezone_sync(client, zone.get(), call.cancellable(), call.error())
                == 0) {
            return false;
        }
    }
    return true;
}

class EdsServer final : public CalendarServer
{
public:
    EdsServer() : m_context(g_main_context_new()) {}
    ~EdsServer() override
    {
        {
            const ContextScope scope(m_context);
            disconnect();
        }
        g_main_context_unref(m_context);
    }

    ServerOutcome calendars(ServerCalendars &found, std::stop_token stop) override
    {
        const ContextScope scope(m_context);
        Call call(std::move(stop));
        ESourceRegistry *sources = registry(call);
        if (sources == nullptr) {
            return given(call);
        }
        const SourcesPointer enabled(
            e_source_registry_list_enabled(sources, E_SOURCE_EXTENSION_CALENDAR));
        for (GList *item = enabled.get(); item != nullptr; item = item->next) {
            ESource *source = E_SOURCE(item->data);
            found.all.append({QString::fromUtf8(e_source_get_uid(source)),
                QString::fromUtf8(e_source_get_display_name(source))});
        }
        const ObjectPointer<ESource> chosen(e_source_registry_ref_default_calendar(sources));
        found.defaultIdentifier =
            chosen ? QString::fromUtf8(e_source_get_uid(chosen.get())) : QString();
        return {};
    }

    ServerOutcome askWhetherWritable(
        const QString &calendar, bool &isWritable, std::stop_token stop) override
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &) {
            isWritable = !isReadOnly(found);
            return true;
        });
    }

    ServerOutcome select(const QString &calendar, const QByteArray &query,
        QList<QByteArray> &components, std::stop_token stop) override
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &call) {
            GSList *list = nullptr;
            const bool isDone = e_cal_client_get_object_list_sync(found, query.constData(), &list,
                                    call.cancellable(), call.error())
                != 0;
            const ObjectsPointer objects(list);
            for (GSList *item = list; item != nullptr; item = item->next) {
                append(components, I_CAL_COMPONENT(item->data));
            }
            return isDone;
        });
    }

    ServerOutcome find(const QString &calendar, const QByteArray &uid,
        QList<QByteArray> &components, std::stop_token stop) override
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &call) {
            GSList *list = nullptr;
            const bool isDone = e_cal_client_get_objects_for_uid_sync(
                                    found, uid.constData(), &list, call.cancellable(), call.error())
                != 0;
            const ObjectsPointer objects(list);
            for (GSList *item = list; item != nullptr; item = item->next) {
                append(components, e_cal_component_get_icalcomponent(E_CAL_COMPONENT(item->data)));
            }
            return isDone || call.saysThatNothingIsThere();
        });
    }

    ServerOutcome zone(const QString &calendar, const QByteArray &name, QByteArray &component,
        std::stop_token stop) override
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &call) {
            ICalTimezone *zone = nullptr; // the client's own
            const bool isDone = e_cal_client_get_timezone_sync(found, name.constData(), &zone,
                                    call.cancellable(), call.error())
                != 0;
            const ObjectPointer<ICalComponent> definition(
                zone == nullptr ? nullptr : i_cal_timezone_get_component(zone));
            if (definition) {
                component = TextPointer(i_cal_component_as_ical_string(definition.get())).get();
            }
            return isDone || call.saysThatNothingIsThere();
        });
    }

    ServerOutcome create(
        const QString &calendar, const QByteArray &file, std::stop_token stop) override
    {
        return write(calendar, file, std::move(stop),
            [](ECalClient *found, ICalComponent *event, Call &call) {
                char *uid = nullptr;
                const bool isDone =
                    e_cal_client_create_object_sync(found, event, E_CAL_OPERATION_FLAG_NONE, &uid,
                        call.cancellable(), call.error())
                    != 0;
                g_free(uid);
                return isDone;
            });
    }

    ServerOutcome modify(
        const QString &calendar, const QByteArray &file, std::stop_token stop) override
    {
        return write(calendar, file, std::move(stop),
            [](ECalClient *found, ICalComponent *event, Call &call) {
                const ObjectPointer<ICalProperty> occurrence(
                    i_cal_component_get_first_property(event, I_CAL_RECURRENCEID_PROPERTY));
                return e_cal_client_modify_object_sync(found, event,
                           occurrence ? E_CAL_OBJ_MOD_THIS : E_CAL_OBJ_MOD_ALL,
                           E_CAL_OPERATION_FLAG_NONE, call.cancellable(), call.error())
                    != 0;
            });
    }

    ServerOutcome remove(const QString &calendar, const QByteArray &uid,
        const QByteArray &occurrence, std::stop_token stop) override
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &call) {
            if (isReadOnly(found)) {
                m_refusal = readOnly();
                return false;
            }
            const bool isOne = !occurrence.isEmpty();
            return e_cal_client_remove_object_sync(found, uid.constData(),
                       isOne ? occurrence.constData() : nullptr,
                       isOne ? E_CAL_OBJ_MOD_THIS : E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE,
                       call.cancellable(), call.error())
                != 0;
        });
    }

private:
    GMainContext *m_context;
    ObjectPointer<ESourceRegistry> m_registry;
    std::map<QString, ObjectPointer<ECalClient>> m_clients;
    std::chrono::steady_clock::time_point m_connected; // the latest of the clients
    std::optional<ServerOutcome> m_refusal; // of the call at hand, where the server has no say

    void disconnect()
    {
        m_clients.clear();
        m_registry.reset();
    }

    // A failure may mean that the server has gone: the next call begins anew.
    [[nodiscard]] ServerOutcome given(Call &call)
    {
        disconnect();
        return call.failure();
    }

    [[nodiscard]] ESourceRegistry *registry(Call &call)
    {
        if (!m_registry) {
            const ObjectPointer<GDBusConnection> bus(
                g_bus_get_sync(G_BUS_TYPE_SESSION, call.cancellable(), call.error()));
            if (!bus) {
                return nullptr;
            }
            // The end of the bus is not the end of the program.
            g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
            m_registry.reset(e_source_registry_new_sync(call.cancellable(), call.error()));
        }
        return m_registry.get();
    }

    [[nodiscard]] ECalClient *client(const QString &calendar, Call &call)
    {
        if (const auto known = m_clients.find(calendar); known != m_clients.end()) {
            return known->second.get();
        }
        ESourceRegistry *sources = registry(call);
        const ObjectPointer<ESource> source(sources == nullptr
                ? nullptr
                : e_source_registry_ref_source(sources, calendar.toUtf8().constData()));
        if (!source) {
            return nullptr;
        }
        EClient *client = e_cal_client_connect_sync(source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
            kDoNotWait, call.cancellable(), call.error());
        if (client == nullptr) {
            return nullptr;
        }
        m_connected = std::chrono::steady_clock::now();
        return (m_clients[calendar] = ObjectPointer<ECalClient>(E_CAL_CLIENT(client))).get();
    }

    // A server that has just opened a calendar calls it read-only for a moment, and takes it back
    // by a signal.
    [[nodiscard]] bool isReadOnly(ECalClient *client) const
    {
        constexpr std::chrono::milliseconds kMoment(300);
        constexpr guint kMilliseconds = 10;
        const auto end = m_connected + kMoment;
        while (e_client_is_readonly(E_CLIENT(client)) != 0) {
            if (std::chrono::steady_clock::now() >= end) {
                return true;
            }
            const std::unique_ptr<GSource, Releasing<g_source_unref>> pause(
                g_timeout_source_new(kMilliseconds));
            g_source_set_callback(
                pause.get(), [](gpointer) { return G_SOURCE_REMOVE; }, nullptr, nullptr);
            g_source_attach(pause.get(), m_context);
            g_main_context_iteration(m_context, TRUE);
            g_source_destroy(pause.get());
        }
        return false;
    }

    template <typename Use>
    ServerOutcome with(const QString &calendar, std::stop_token stop, Use use)
    {
        const ContextScope scope(m_context);
        Call call(std::move(stop));
        m_refusal.reset();
        ECalClient *found = client(calendar, call);
        if (found != nullptr && use(found, call)) {
            return {};
        }
        return m_refusal ? *m_refusal : given(call);
    }

    template <typename Use>
    ServerOutcome write(
        const QString &calendar, const QByteArray &file, std::stop_token stop, Use use)
    {
        return with(calendar, std::move(stop), [&](ECalClient *found, Call &call) {
            // The server itself would take the event.
            if (isReadOnly(found)) {
                m_refusal = readOnly();
                return false;
            }
            const ObjectPointer<ICalComponent> parsed(
                i_cal_component_new_from_string(file.constData()));
            const ObjectPointer<ICalComponent> event(parsed
                    ? i_cal_component_get_first_component(parsed.get(), I_CAL_VEVENT_COMPONENT)
                    : nullptr);
            return event && addZones(found, parsed.get(), call) && use(found, event.get(), call);
        });
    }
};

} // namespace

} // namespace velarc

velarc::CalendarServer *velarcMakeCalendarServer()
{
    return new velarc::EdsServer;
}
