#include "system_actions/uri_handler.h"

#include <gio/gio.h>

namespace velarc {

namespace {

// Launching reaches for the bus, and a process that does so ends with it unless told otherwise.
void outliveTheBus()
{
    if (GDBusConnection *bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        g_object_unref(bus);
    }
}

} // namespace

std::optional<UriHandler> UriHandler::forScheme(const QByteArray &scheme)
{
    GAppInfo *program = g_app_info_get_default_for_uri_scheme(scheme.constData());
    if (program == nullptr) {
        return std::nullopt;
    }
    return UriHandler(std::shared_ptr<void>(program, &g_object_unref));
}

std::optional<QString> UriHandler::open(QByteArray uri) const
{
    outliveTheBus();
    GList uris{uri.data(), nullptr, nullptr};
    GError *error = nullptr;
    if (g_app_info_launch_uris(G_APP_INFO(m_program.get()), &uris, nullptr, &error) != 0) {
        return std::nullopt;
    }
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, &g_error_free);
    return QString::fromUtf8(owned->message);
}

} // namespace velarc
