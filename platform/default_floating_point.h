// Gives Qt the default floating-point environment while it converts numbers.

#pragma once

#include <cfenv>

namespace kelcom
{

/// Sets the default environment, and restores the host's environment at the end of the scope. In the host's
/// environment, unmasked traps could end the process, and another rounding mode could change digits.
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
