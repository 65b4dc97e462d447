/// \file
/// A counted pointer for COM objects: it takes a reference when it is made and gives it back when it goes.

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
    /// Holds nothing.
    ComPtr(std::nullptr_t) {}
    /// Takes a reference of its own; the caller keeps what it held. A new object of count 0 leaves
    /// with the pointer's one reference.
    explicit ComPtr(T* object) : m_object(object)
    {
        if (m_object)
            m_object->AddRef();
    }
    /// Takes a reference of its own on what `other` holds.
    ComPtr(const ComPtr& other) : ComPtr(other.m_object) {}
    /// Takes over the reference of `other`, which holds nothing then.
    ComPtr(ComPtr&& other) noexcept : m_object(other.detach()) {}
    /// Gives the held reference back and holds what `other` held.
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() { reset(); }

    /// Takes over a reference that the caller holds, as every out-parameter gives one.
    static ComPtr adopt(T* object) noexcept
    {
        ComPtr pointer;
        pointer.m_object = object;
        return pointer;
    }

    /// Lends the object; the reference stays here.
    T* get() const noexcept { return m_object; }
    /// Lends the object, which must be there.
    T* operator->() const noexcept { return m_object; }
    /// Lends the object, which must be there.
    T& operator*() const noexcept { return *m_object; }
    /// \return whether an object is held
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// Gives the reference back and holds nothing.
    void reset() noexcept
    {
        if (T* const object = std::exchange(m_object, nullptr))
            object->Release();
    }
    /// Hands the reference to the caller, who releases it.
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_object, nullptr); }
    /// Gives the reference back and lends the empty place as an out-parameter.
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
