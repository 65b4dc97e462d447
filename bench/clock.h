// The clock of all measurements, and the median by which one slow turn does not count.

#pragma once

#include <algorithm>
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
