// Gives Qt the default floating-point environment while it converts numbers.

#pragma once

#include <cfenv>

namespace kelxml::qt
{

/// Restores the host's environment when it goes out of scope. Traps that a host has unmasked would end the
/// process inside Qt, and its rounding mode would change digits.
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

} // namespace kelxml::qt
