#include "intake/documents/quiet_log.h"

#include <glib.h>

namespace velarc {

namespace {

GLogWriterOutput stayQuiet(GLogLevelFlags, const GLogField *, gsize, gpointer)
{
    return G_LOG_WRITER_HANDLED;
}

} // namespace

void silenceLibraries()
{
    // A second writer ends the process.
    static const bool isDone = [] {
        g_log_set_writer_func(&stayQuiet, nullptr, nullptr);
        return true;
    }();
    static_cast<void>(isDone);
}

} // namespace velarc
