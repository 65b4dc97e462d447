/// \file
/// A class that owns one `VARIANT`. The class is header-only, and its use is optional.

#pragma once

#include "bstr.h"
#include "com_ptr.h"
#include "dispatch.h"
#include "error.h"

#include <cstdint>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kel
{

/// Owns a `VARIANT`. The destructor frees the BSTR or releases the object in the `VARIANT`. A copy of a
/// `Variant` has its own BSTR or reference. If the type includes `VT_BYREF`, the `VARIANT` contains a
/// pointer, and a `Variant` does not own the value that is pointed to.
class Variant
{
public:
    Variant() = default;
    /// Creates a `VT_I4`.
    explicit Variant(LONG number) noexcept { set(VT_I4, &VARIANT::lVal, number); }
    /// Creates a `VT_I8`.
    explicit Variant(std::int64_t number) noexcept { set(VT_I8, &VARIANT::llVal, number); }
    /// Creates a `VT_R8`.
    explicit Variant(double number) noexcept { set(VT_R8, &VARIANT::dblVal, number); }
    /// Creates a `VT_BOOL`: -1 for true, 0 for false.
    explicit Variant(bool truth) noexcept
    {
        set(VT_BOOL, &VARIANT::boolVal, truth ? VARIANT_TRUE : VARIANT_FALSE);
    }
    /// Copies `text`, including any zero characters in the text. \throw std::bad_alloc
    explicit Variant(std::wstring_view text) { setText(text.data(), text.size()); }
    /// Copies `text`. If `text` is null, creates a null BSTR, which counts as an empty text.
    /// \throw std::bad_alloc
    explicit Variant(const wchar_t* text)
    {
        set(VT_BSTR, &VARIANT::bstrVal, BSTR{});
        if (text)
            setText(text, std::char_traits<wchar_t>::length(text));
    }
    /// Copies `text`. \throw std::bad_alloc
    explicit Variant(const std::wstring& text) : Variant(std::wstring_view(text)) {}
    /// Takes over the BSTR of `text`. `text` becomes empty.
    explicit Variant(Bstr&& text) noexcept { set(VT_BSTR, &VARIANT::bstrVal, text.detach()); }
    /// Creates a `VT_DISPATCH` that owns a reference to the object. If `object` is empty, creates a
    /// `VT_DISPATCH` with a null pointer.
    template <class Object, class = std::enable_if_t<std::is_base_of_v<IDispatch, Object>>>
    explicit Variant(ComPtr<Object> object) noexcept
    {
        set(VT_DISPATCH, &VARIANT::pdispVal, object.detach());
    }
    /// Deleted, because a `VARIANT_BOOL` and a 16-bit number have the same C++ type, so it is unclear which
    /// of the two is meant.
    explicit Variant(SHORT) = delete;
    /// Deleted. Without this deleted constructor, a pointer to any other type would convert to `bool`.
    explicit Variant(const void*) = delete;

    /// Copies the value of `other`. If the value is a BSTR, duplicates the BSTR. If the value is an object,
    /// adds a reference to the object.
    /// \throw std::bad_alloc
    Variant(const Variant& other) : m_value(other.m_value)
    {
        if (m_value.vt == VT_BSTR && m_value.bstrVal)
            setText(m_value.bstrVal, SysStringLen(m_value.bstrVal));
        else if (IUnknown* const object = heldObject())
            object->AddRef();
    }
    /// Takes over the value of `other`. `other` becomes empty.
    Variant(Variant&& other) noexcept : m_value(other.detach()) {}
    /// Frees the held value and takes over the value of `other`.
    Variant& operator=(Variant other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Variant() { reset(); }

    /// Takes over the BSTR or the reference in `value` from the caller.
    static Variant adopt(const VARIANT& value) noexcept
    {
        Variant owner;
        owner.m_value = value;
        return owner;
    }

    /// Returns the value, to read it or to pass it as an argument. This object still owns the content.
    const VARIANT& get() const noexcept { return m_value; }
    /// \return the type of the value
    VARTYPE type() const noexcept { return m_value.vt; }
    /// Frees the BSTR or releases the object, and changes the type of this object to `VT_EMPTY`.
    void reset() noexcept
    {
        const VARIANT value = detach();
        if (value.vt == VT_BSTR)
            SysFreeString(value.bstrVal);
        else if (value.vt == VT_DISPATCH && value.pdispVal)
            value.pdispVal->Release();
        else if (value.vt == VT_UNKNOWN && value.punkVal)
            value.punkVal->Release();
    }
    /// Gives the value to the caller, who must free the BSTR or release the object in the value. This object
    /// becomes empty.
    [[nodiscard]] VARIANT detach() noexcept { return std::exchange(m_value, VARIANT{}); }
    /// Frees the content and becomes empty. Returns the address of the `VARIANT`, to pass as an
    /// out-parameter. This object will own what is written there.
    VARIANT* put() noexcept
    {
        reset();
        return &m_value;
    }

    /// Returns the number if the value has an integer type other than `VT_UI8`, whose numbers may not fit in
    /// `std::int64_t`. Values of other types are not converted.
    /// \throw Error `DISP_E_TYPEMISMATCH` if the value has another type
    std::int64_t integer() const
    {
        switch (m_value.vt) {
        case VT_I1:
            return m_value.cVal;
        case VT_UI1:
            return m_value.bVal;
        case VT_I2:
            return m_value.iVal;
        case VT_UI2:
            return m_value.uiVal;
        case VT_I4:
        case VT_INT:
            return m_value.lVal;
        case VT_UI4:
        case VT_UINT:
            return m_value.ulVal;
        case VT_I8:
            return m_value.llVal;
        default:
            throw Error(DISP_E_TYPEMISMATCH);
        }
    }
    /// Returns the number if the value has a floating-point type, is a date or has a type that `integer`
    /// accepts.
    /// \throw Error `DISP_E_TYPEMISMATCH` if the value has another type
    double number() const
    {
        switch (m_value.vt) {
        case VT_R4:
            return static_cast<double>(m_value.fltVal);
        case VT_R8:
        case VT_DATE:
            return m_value.dblVal;
        default:
            return static_cast<double>(integer());
        }
    }
    /// Returns the value of a `VT_BOOL`. \throw Error `DISP_E_TYPEMISMATCH` if the value has another type
    bool truth() const { return requireType(VT_BOOL).boolVal != VARIANT_FALSE; }
    /// Returns the text of a `VT_BSTR`. The returned view is valid until this object changes or is destroyed.
    /// \throw Error `DISP_E_TYPEMISMATCH` if the value has another type
    std::wstring_view text() const
    {
        const BSTR text = requireType(VT_BSTR).bstrVal;
        return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
    }
    /// Returns a pointer to the object of a `VT_DISPATCH`. The pointer owns a new reference to the object. If
    /// the object is null, the pointer is empty.
    /// \throw Error `DISP_E_TYPEMISMATCH` if the value has another type
    ComPtr<IDispatch> object() const { return ComPtr<IDispatch>(requireType(VT_DISPATCH).pdispVal); }

private:
    template <class Member>
    using Field = Member VARIANT::*;

    template <class Member>
    void set(VARTYPE type, Field<Member> member, std::common_type_t<Member> value) noexcept
    {
        m_value.vt = type;
        m_value.*member = value;
    }
    void setText(const wchar_t* text, std::size_t length)
    {
        const bool isTooLong = length > std::numeric_limits<UINT>::max();
        const BSTR copy =
            isTooLong ? nullptr : SysAllocStringLen(text ? text : L"", static_cast<UINT>(length));
        if (!copy)
            throw std::bad_alloc();
        set(VT_BSTR, &VARIANT::bstrVal, copy);
    }
    IUnknown* heldObject() const noexcept
    {
        return m_value.vt == VT_DISPATCH  ? m_value.pdispVal
               : m_value.vt == VT_UNKNOWN ? m_value.punkVal
                                          : nullptr;
    }
    const VARIANT& requireType(VARTYPE type) const
    {
        if (m_value.vt != type)
            throw Error(DISP_E_TYPEMISMATCH);
        return m_value;
    }

    VARIANT m_value{};
};

static_assert(sizeof(Variant) == sizeof(VARIANT), "an array of Variant can be passed as an array of VARIANT");

} // namespace kel
