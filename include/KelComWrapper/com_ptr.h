/// \file
/// A smart pointer that owns one reference to a COM object.

#pragma once

#include <cstddef>
#include <utility>

namespace kel
{

/// Owns one reference to an object, or is empty. `T` must have `AddRef` and `Release`.
template <class T>
class ComPtr
{
public:
    ComPtr() = default;
    /// Creates an empty pointer.
    ComPtr(std::nullptr_t) {}
    /// Adds a reference to `object`, which may be null. A reference that the caller owns stays with the
    /// caller: use `put` or `adopt` for an object that a method returned. An object that was just constructed
    /// with `new` has a reference count of 0, so the new pointer owns the only reference.
    explicit ComPtr(T* object) : m_object(object)
    {
        if (m_object)
            m_object->AddRef();
    }
    /// Adds a reference to the object that `other` points to.
    ComPtr(const ComPtr& other) : ComPtr(other.m_object) {}
    /// Takes over the reference of `other`. `other` becomes empty.
    ComPtr(ComPtr&& other) noexcept : m_object(other.detach()) {}
    /// Releases the held reference and takes over the reference of `other`.
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() { reset(); }

    /// Takes over a reference that the caller owns, such as a reference from an out-parameter. Does not add a
    /// reference.
    static ComPtr adopt(T* object) noexcept
    {
        ComPtr pointer;
        pointer.m_object = object;
        return pointer;
    }

    /// Returns the object, or null if this pointer is empty. This pointer keeps its reference.
    T* get() const noexcept { return m_object; }
    /// Accesses the object. This pointer must not be empty.
    T* operator->() const noexcept { return m_object; }
    /// Accesses the object. This pointer must not be empty.
    T& operator*() const noexcept { return *m_object; }
    /// \return whether this pointer holds an object
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// Releases the reference and becomes empty.
    void reset() noexcept
    {
        if (T* const object = std::exchange(m_object, nullptr))
            object->Release();
    }
    /// Gives the reference to the caller, who must release it. This pointer becomes empty.
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_object, nullptr); }
    /// Releases the reference and becomes empty. Returns the address of the raw pointer, to pass as an
    /// out-parameter. This `ComPtr` will own the reference that is written to the address.
    T** put() noexcept
    {
        reset();
        return &m_object;
    }

private:
    T* m_object = nullptr;
};

static_assert(sizeof(ComPtr<int>) == sizeof(void*), "a ComPtr member must be as large as a raw pointer");

} // namespace kel
