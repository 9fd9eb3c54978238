#include "fakes/silent_bus_name.h"

#include <gio/gio.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>

namespace velarc {

struct SilentBusName::Members
{
    mutable std::mutex mutex;
    mutable std::condition_variable arrived;
    int calls = 0;
    Calls answer = Calls::Unanswered;
    GDBusConnection *connection = nullptr;

    static GDBusMessage *takeCall(
        GDBusConnection *connection, GDBusMessage *message, gboolean incoming, gpointer data);
};

namespace {

void require(GError *error)
{
    if (error != nullptr) {
        const std::string message = error->message;
        g_error_free(error);
        throw std::runtime_error(message);
    }
}

GDBusConnection *connectToSession()
{
    GError *error = nullptr;
    gchar *address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    require(error);
    GDBusConnection *connection = g_dbus_connection_new_for_address_sync(address,
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
            | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    g_free(address);
    require(error);
    return connection;
}

bool takeName(GDBusConnection *connection, const char *name)
{
    constexpr guint32 kDoNotQueue = 4;
    constexpr guint32 kOwner = 1;
    GError *error = nullptr;
    GVariant *reply =
        g_dbus_connection_call_sync(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name, kDoNotQueue),
            G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    require(error);
    guint32 result = 0;
    g_variant_get(reply, "(u)", &result);
    g_variant_unref(reply);
    return result == kOwner;
}

} // namespace

SilentBusName::SilentBusName(const char *name, Calls calls) : m_members(std::make_unique<Members>())
{
    m_members->answer = calls;
    m_members->connection = connectToSession();
    g_dbus_connection_add_filter(
        m_members->connection, &Members::takeCall, m_members.get(), nullptr);
    if (!takeName(m_members->connection, name)) {
        throw std::runtime_error(std::string(name) + " has an owner");
    }
}

// In the connection's own thread.
GDBusMessage *SilentBusName::Members::takeCall(
    GDBusConnection *connection, GDBusMessage *message, gboolean incoming, gpointer data)
{
    const bool isCall = g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL;
    if (incoming == 0 || !isCall) {
        return message;
    }
    auto *members = static_cast<Members *>(data);
    if (members->answer == Calls::Acknowledged) {
        GDBusMessage *reply = g_dbus_message_new_method_reply(message);
        g_dbus_connection_send_message(
            connection, reply, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
        g_object_unref(reply);
    }
    g_object_unref(message);
    const std::lock_guard lock(members->mutex);
    ++members->calls;
    members->arrived.notify_all();
    return nullptr;
}

SilentBusName::~SilentBusName()
{
    // Behind the close no filter runs any more.
    g_dbus_connection_close_sync(m_members->connection, nullptr, nullptr);
    g_object_unref(m_members->connection);
}

int SilentBusName::calls() const
{
    const std::lock_guard lock(m_members->mutex);
    return m_members->calls;
}

bool SilentBusName::waitForCalls(int count) const
{
    std::unique_lock lock(m_members->mutex);
    return m_members->arrived.wait_for(
        lock, std::chrono::seconds(20), [this, count] { return m_members->calls >= count; });
}

} // namespace velarc
