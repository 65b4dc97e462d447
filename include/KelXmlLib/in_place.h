/// \file
/// A member of a class that stays hidden, without an allocation of its own.

#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace kelxml
{

/// Holds a `Hidden` in `Size` bytes. As with `std::unique_ptr`, that class has to be known only where the
/// object that holds it is made and destroyed. For the library itself.
template <class Hidden, std::size_t Size>
class InPlace
{
public:
    /// Makes it from `arguments`.
    template <class... Arguments>
    explicit InPlace(Arguments&&... arguments)
    {
        static_assert(sizeof(Hidden) <= Size && alignof(Hidden) <= alignof(void*));
        new (m_bytes) Hidden(std::forward<Arguments>(arguments)...);
    }
    /// Destroys it.
    ~InPlace() { (*this)->~Hidden(); }
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    /// What is held.
    Hidden* operator->() { return std::launder(reinterpret_cast<Hidden*>(m_bytes)); }

private:
    alignas(void*) std::byte m_bytes[Size];
};

} // namespace kelxml
