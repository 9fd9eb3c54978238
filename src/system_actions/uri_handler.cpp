#include "system_actions/uri_handler.h"

#include <gio/gio.h>

#include <memory>

namespace velarc {

namespace {

struct Unreference
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Handler = std::unique_ptr<GAppInfo, Unreference>;

Handler handlerOf(const QByteArray &scheme)
{
    return Handler(g_app_info_get_default_for_uri_scheme(scheme.constData()));
}

// Launching reaches for the bus, and a process that does so ends with it unless told otherwise.
void outliveTheBus()
{
    if (GDBusConnection *bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        g_object_unref(bus);
    }
}

} // namespace

bool hasUriHandler(const QByteArray &scheme)
{
    return handlerOf(scheme) != nullptr;
}

UriLaunchResult launchUri(const QByteArray &uri)
{
    const Handler handler = handlerOf(uri.left(uri.indexOf(':')));
    if (!handler) {
        return {UriLaunch::NoHandler, {}};
    }
    outliveTheBus();
    QByteArray address = uri;
    GList uris{address.data(), nullptr, nullptr};
    GError *error = nullptr;
    if (g_app_info_launch_uris(handler.get(), &uris, nullptr, &error) != 0) {
        return {UriLaunch::Launched, {}};
    }
    UriLaunchResult failed{UriLaunch::Failed, QString::fromUtf8(error->message)};
    g_error_free(error);
    return failed;
}

} // namespace velarc
