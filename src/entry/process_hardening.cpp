#include "entry/process_hardening.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace velarc {

void keepMemoryPrivate()
{
    // A crash collector that the kernel feeds through a pipe is not bound by the limit, only by the
    // flag; a program that is started keeps the limit, but not the flag.
    rlimit cores{};
    if (getrlimit(RLIMIT_CORE, &cores) == 0) {
        cores.rlim_cur = 0;
        setrlimit(RLIMIT_CORE, &cores);
    }
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}

void holdStandardStreams()
{
    // The lowest free number is the one that is given out.
    int descriptor = -1;
    do {
        descriptor = ::open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    ::close(descriptor);
}

} // namespace velarc
