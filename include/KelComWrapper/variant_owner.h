/// \file
/// A class that owns one VARIANT. Header-only and optional.

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

/// Owns a value with its BSTR or object reference, and frees that on destruction. A copy has its own BSTR or
/// reference. A value that is only pointed to (`VT_BYREF`) is not owned.
class Variant
{
public:
    Variant() = default;
    /// A `VT_I4`.
    explicit Variant(LONG number) noexcept { set(VT_I4, &VARIANT::lVal, number); }
    /// A `VT_I8`.
    explicit Variant(std::int64_t number) noexcept { set(VT_I8, &VARIANT::llVal, number); }
    /// A `VT_R8`.
    explicit Variant(double number) noexcept { set(VT_R8, &VARIANT::dblVal, number); }
    /// A `VT_BOOL` in the published form.
    explicit Variant(bool truth) noexcept
    {
        set(VT_BOOL, &VARIANT::boolVal, truth ? VARIANT_TRUE : VARIANT_FALSE);
    }
    /// Copies the text, including zeros in it. \throw std::bad_alloc
    explicit Variant(std::wstring_view text) { setText(text.data(), text.size()); }
    /// Null becomes a null BSTR, which is an empty text. \throw std::bad_alloc
    explicit Variant(const wchar_t* text)
    {
        set(VT_BSTR, &VARIANT::bstrVal, BSTR{});
        if (text)
            setText(text, std::char_traits<wchar_t>::length(text));
    }
    /// Copies the text. \throw std::bad_alloc
    explicit Variant(const std::wstring& text) : Variant(std::wstring_view(text)) {}
    /// Takes over the BSTR.
    explicit Variant(Bstr&& text) noexcept { set(VT_BSTR, &VARIANT::bstrVal, text.detach()); }
    /// Adds a reference. Null becomes a null object.
    template <class Object, class = std::enable_if_t<std::is_base_of_v<IDispatch, Object>>>
    explicit Variant(ComPtr<Object> object) noexcept
    {
        set(VT_DISPATCH, &VARIANT::pdispVal, object.detach());
    }
    /// Deleted: a `VARIANT_BOOL` and a small number have the same type.
    explicit Variant(SHORT) = delete;
    /// Deleted: any other pointer would convert to a truth value.
    explicit Variant(const void*) = delete;

    /// \throw std::bad_alloc
    Variant(const Variant& other) : m_value(other.m_value)
    {
        if (m_value.vt == VT_BSTR && m_value.bstrVal)
            setText(m_value.bstrVal, SysStringLen(m_value.bstrVal));
        else if (IUnknown* const object = carried())
            object->AddRef();
    }
    /// Takes over the value of `other`, which becomes empty.
    Variant(Variant&& other) noexcept : m_value(other.detach()) {}
    /// Frees the held value and takes over the assigned one.
    Variant& operator=(Variant other) noexcept
    {
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~Variant() { reset(); }

    /// Takes over the BSTR or reference in `value`.
    static Variant adopt(const VARIANT& value) noexcept
    {
        Variant owner;
        owner.m_value = value;
        return owner;
    }

    /// Lends the value, to read or to pass as an argument. This object still owns its content.
    const VARIANT& get() const noexcept { return m_value; }
    /// \return the type of the value
    VARTYPE type() const noexcept { return m_value.vt; }
    /// Frees the content and becomes empty (`VT_EMPTY`).
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
    /// Passes the value to the caller, who frees its content.
    [[nodiscard]] VARIANT detach() noexcept { return std::exchange(m_value, VARIANT{}); }
    /// Frees the content and returns the value's address as an out-parameter.
    VARIANT* put() noexcept
    {
        reset();
        return &m_value;
    }

    /// Getters do not convert, except a number to a wider type.
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
    /// \return the number, from any number type whose values fit \throw Error
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
    /// \return the truth value \throw Error
    bool truth() const { return of(VT_BOOL).boolVal != VARIANT_FALSE; }
    /// The text; valid while this object keeps it.
    std::wstring_view text() const
    {
        const BSTR text = of(VT_BSTR).bstrVal;
        return text ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
    }
    /// The object, with an added reference; may be null.
    ComPtr<IDispatch> object() const { return ComPtr<IDispatch>(of(VT_DISPATCH).pdispVal); }

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
        const BSTR made =
            isTooLong ? nullptr : SysAllocStringLen(text ? text : L"", static_cast<UINT>(length));
        if (!made)
            throw std::bad_alloc();
        set(VT_BSTR, &VARIANT::bstrVal, made);
    }
    IUnknown* carried() const noexcept
    {
        return m_value.vt == VT_DISPATCH  ? m_value.pdispVal
               : m_value.vt == VT_UNKNOWN ? m_value.punkVal
                                          : nullptr;
    }
    const VARIANT& of(VARTYPE type) const
    {
        if (m_value.vt != type)
            throw Error(DISP_E_TYPEMISMATCH);
        return m_value;
    }

    VARIANT m_value{};
};

static_assert(sizeof(Variant) == sizeof(VARIANT), "takes the place of a VARIANT in an array");

} // namespace kel
