/// \file
/// Lets a header hide the type of a class member. The member is stored inside the object of the class, not on
/// the heap.

#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace kelxml
{

/// For internal use. Contains an object of type `Hidden` in `Size` bytes. `Hidden` may be an incomplete type,
/// except in code that creates, destroys or uses the contained object.
template <class Hidden, std::size_t Size>
class InPlace
{
public:
    /// Constructs the contained object from `arguments`.
    template <class... Arguments>
    explicit InPlace(Arguments&&... arguments)
    {
        static_assert(sizeof(Hidden) <= Size && alignof(Hidden) <= alignof(void*));
        new (m_bytes) Hidden(std::forward<Arguments>(arguments)...);
    }
    /// Destroys the contained object.
    ~InPlace() { (*this)->~Hidden(); }
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    /// Returns the contained object.
    Hidden* operator->() { return std::launder(reinterpret_cast<Hidden*>(m_bytes)); }

private:
    alignas(void*) std::byte m_bytes[Size];
};

} // namespace kelxml
