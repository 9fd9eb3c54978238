// Plays a wallet daemon: owns the bus name in its first argument, then, unless there is no second
// one, starts the keyring daemon with the second as password.

#include <gio/gio.h>

#include <string>

namespace {

void startKeyring(const char *password)
{
    GError *error = nullptr;
    GSubprocess *keyring = g_subprocess_new(
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_SILENCE
            | G_SUBPROCESS_FLAGS_STDERR_SILENCE),
        &error, "gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets",
        nullptr);
    if (keyring == nullptr) {
        g_error("%s", error->message);
    }
    const std::string line = std::string(password) + '\n';
    GOutputStream *input = g_subprocess_get_stdin_pipe(keyring);
    g_output_stream_write_all(input, line.data(), line.size(), nullptr, nullptr, nullptr);
    g_output_stream_close(input, nullptr, nullptr);
}

void onNameAcquired(GDBusConnection *, const gchar *, gpointer password)
{
    if (password != nullptr) {
        startKeyring(static_cast<const char *>(password));
    }
}

} // namespace

int main(int argc, char **argv)
{
    g_bus_own_name(G_BUS_TYPE_SESSION, argv[1], G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
        &onNameAcquired, nullptr, argc > 2 ? argv[2] : nullptr, nullptr);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
    return 0;
}
