// How much memory a piece of work takes at its peak, beyond what the process holds before it.

#pragma once

#include <fstream>
#include <malloc.h>
#include <stdexcept>
#include <string>

namespace bench
{

/// A figure of this process as the kernel gives it, in kilobytes. \throw std::runtime_error
inline long kilobytes(const std::string& figure)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(figure + ":", 0) == 0)
            return std::stol(line.substr(figure.size() + 1));
    throw std::runtime_error("no such figure: " + figure);
}

/// \return megabytes
template <class Work>
double peakOf(const Work& work)
{
    malloc_trim(0); // else the work would begin with what was freed before it
    const char resetPeak[] = "5";
    if (!(std::ofstream("/proc/self/clear_refs") << resetPeak << std::flush))
        throw std::runtime_error("the peak cannot be reset");
    const long before = kilobytes("VmRSS");
    work();
    return static_cast<double>(kilobytes("VmHWM") - before) / 1024;
}

} // namespace bench
