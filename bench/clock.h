// The clock of all measurements, what has to be done before it is read, and the median by which one slow turn
// does not count.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace bench
{

/// Of this thread alone: what else the machine does meanwhile is not counted.
inline double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// What was freed is sorted and joined by the next large allocation. Else that would be one of the first in
/// the work, and a load would take twice the time where a tree was freed before it.
inline void tidyHeap()
{
    constexpr std::size_t kLarge = 1024 * 1024;
    void* const volatile block = std::malloc(kLarge);
    std::free(block);
}

template <class Work>
double secondsOf(const Work& work)
{
    const double start = cpuSeconds();
    work();
    return cpuSeconds() - start;
}

/// \param values not empty
inline double median(std::vector<double> values)
{
    const std::size_t middle = values.size() / 2;
    std::sort(values.begin(), values.end());
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace bench
