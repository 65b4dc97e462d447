// VARIANTs made and cleared.

#include "value.h"

#include "KelComWrapper/bstr.h"

#include <new>

namespace host
{

Value::Value(std::wstring_view text)
{
    m_variant.vt = VT_BSTR;
    m_variant.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!m_variant.bstrVal)
        throw std::bad_alloc();
}

Value::Value(std::int32_t number)
{
    m_variant.vt = VT_I4;
    m_variant.lVal = number;
}

Value::Value(std::int64_t number)
{
    m_variant.vt = VT_I8;
    m_variant.llVal = number;
}

Value::Value(double number)
{
    m_variant.vt = VT_R8;
    m_variant.dblVal = number;
}

Value::Value(bool truth)
{
    m_variant.vt = VT_BOOL;
    m_variant.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
}

std::wstring Value::text() const
{
    if (m_variant.vt != VT_BSTR)
        return {};
    return {m_variant.bstrVal ? m_variant.bstrVal : L"", SysStringLen(m_variant.bstrVal)};
}

kel::ComPtr<IDispatch> Value::object() const
{
    return kel::ComPtr<IDispatch>(m_variant.vt == VT_DISPATCH ? m_variant.pdispVal : nullptr);
}

void Value::clear() noexcept
{
    if (m_variant.vt == VT_BSTR)
        SysFreeString(m_variant.bstrVal);
    else if (m_variant.vt == VT_DISPATCH && m_variant.pdispVal)
        m_variant.pdispVal->Release();
    else if (m_variant.vt == VT_UNKNOWN && m_variant.punkVal)
        m_variant.punkVal->Release();
    m_variant = VARIANT{};
}

} // namespace host
