#pragma once

// Processor time, for tests that cost grows as it should: other load on the machine does not count.

#include <algorithm>
#include <chrono>
#include <ctime>

namespace velarc {

// The processor time that this thread spends in `work`.
template <typename Work> [[nodiscard]] std::chrono::duration<double> cpuTime(Work work)
{
    const auto now = [] {
        std::timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    };
    const auto start = now();
    work();
    return now() - start;
}

// The least of three measurements.
template <typename Work> [[nodiscard]] std::chrono::duration<double> bestCpuTime(Work work)
{
    return std::min({cpuTime(work), cpuTime(work), cpuTime(work)});
}

} // namespace velarc
