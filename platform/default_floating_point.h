// Sets the default floating-point environment while Qt converts numbers.

#pragma once

#include <cfenv>

namespace kelcom
{

/// The constructor sets the default floating-point environment, and the destructor restores the host's
/// environment. The host may have unmasked floating-point traps, which could end the process, or may have set
/// another rounding mode, which could change the digits of converted numbers.
class DefaultFloatingPoint
{
public:
    DefaultFloatingPoint()
    {
        std::fegetenv(&m_saved);
        std::fesetenv(FE_DFL_ENV);
    }
    ~DefaultFloatingPoint() { std::fesetenv(&m_saved); }
    DefaultFloatingPoint(const DefaultFloatingPoint&) = delete;
    DefaultFloatingPoint& operator=(const DefaultFloatingPoint&) = delete;

private:
    std::fenv_t m_saved{};
};

} // namespace kelcom
