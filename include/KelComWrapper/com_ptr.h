/// \file
/// A reference-counted pointer for COM objects: adds a reference on construction and releases it on
/// destruction.

#pragma once

#include <cstddef>
#include <utility>

namespace kel
{

/// Holds one reference on `T`, which has `AddRef` and `Release`.
template <class T>
class ComPtr
{
public:
    ComPtr() = default;
    /// An empty pointer.
    ComPtr(std::nullptr_t) {}
    /// Adds a reference; the caller keeps its own. A new object with count 0 then has this one reference.
    explicit ComPtr(T* object) : m_object(object)
    {
        if (m_object)
            m_object->AddRef();
    }
    /// Adds a reference to the object of `other`.
    ComPtr(const ComPtr& other) : ComPtr(other.m_object) {}
    /// Takes over the reference of `other`, which becomes empty.
    ComPtr(ComPtr&& other) noexcept : m_object(other.detach()) {}
    /// Releases the held reference and takes over that of `other`.
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() { reset(); }

    /// Takes over a reference that the caller owns, such as one from an out-parameter.
    static ComPtr adopt(T* object) noexcept
    {
        ComPtr pointer;
        pointer.m_object = object;
        return pointer;
    }

    /// Lends the object; the pointer keeps the reference.
    T* get() const noexcept { return m_object; }
    /// Lends the object; the pointer must not be empty.
    T* operator->() const noexcept { return m_object; }
    /// Lends the object; the pointer must not be empty.
    T& operator*() const noexcept { return *m_object; }
    /// \return whether an object is held
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// Releases the reference and becomes empty.
    void reset() noexcept
    {
        if (T* const object = std::exchange(m_object, nullptr))
            object->Release();
    }
    /// Passes the reference to the caller, who releases it.
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_object, nullptr); }
    /// Releases the reference and returns the pointer's address as an out-parameter.
    T** put() noexcept
    {
        reset();
        return &m_object;
    }

private:
    T* m_object = nullptr;
};

static_assert(sizeof(ComPtr<int>) == sizeof(void*), "takes the place of a pointer in a structure");

} // namespace kel
