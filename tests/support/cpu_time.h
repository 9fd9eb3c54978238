#pragma once

// Processor time, for tests that cost grows as it should: other load on the machine does not count.

#include <algorithm>
#include <chrono>
#include <ctime>

namespace velarc {

// The processor time that this thread has spent so far.
[[nodiscard]] inline std::chrono::nanoseconds threadCpuTime()
{
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// The processor time that this thread spends in `work`.
template <typename Work> [[nodiscard]] std::chrono::duration<double> cpuTime(Work work)
{
    const auto start = threadCpuTime();
    work();
    return threadCpuTime() - start;
}

// The least of three measurements.
template <typename Work> [[nodiscard]] std::chrono::duration<double> bestCpuTime(Work work)
{
    return std::min({cpuTime(work), cpuTime(work), cpuTime(work)});
}

} // namespace velarc
