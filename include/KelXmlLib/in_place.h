/// \file
/// A hidden member of a class, without a separate allocation.

#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace kelxml
{

/// Holds a `Hidden` in `Size` bytes. As with `std::unique_ptr`, only code that creates or destroys the outer
/// object needs the complete class. For internal use.
template <class Hidden, std::size_t Size>
class InPlace
{
public:
    /// Constructs the object from `arguments`.
    template <class... Arguments>
    explicit InPlace(Arguments&&... arguments)
    {
        static_assert(sizeof(Hidden) <= Size && alignof(Hidden) <= alignof(void*));
        new (m_bytes) Hidden(std::forward<Arguments>(arguments)...);
    }
    /// Destroys the object.
    ~InPlace() { (*this)->~Hidden(); }
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    /// The object.
    Hidden* operator->() { return std::launder(reinterpret_cast<Hidden*>(m_bytes)); }

private:
    alignas(void*) std::byte m_bytes[Size];
};

} // namespace kelxml
