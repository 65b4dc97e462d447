// Converts between the types of COM and the types of Qt. The functions in `trees/content` make all changes.

#include "dom/content.h"

#include "platform/default_floating_point.h"
#include "text/strings.h"
#include "trees/content.h"

namespace kelxml::dom
{

namespace
{

template <class Number>
void setNumber(const NodeRef& element, const QString& name, const Number& value)
{
    const kelcom::DefaultFloatingPoint environment;
    trees::setAttribute(element, name, value);
}

/// Does nothing if `value` has the flag VT_BYREF, or a type that has no case below.
void setByType(const NodeRef& element, const QString& name, const VARIANT& value)
{
    switch (value.vt) {
    case VT_BSTR:
        return trees::setAttribute(element, name, text::fromWide(value.bstrVal));
    case VT_I2:
        return trees::setAttribute(element, name, qlonglong{value.iVal});
    case VT_I4:
    case VT_INT:
        return trees::setAttribute(element, name, qlonglong{value.lVal});
    case VT_I8:
        return trees::setAttribute(element, name, qlonglong{value.llVal});
    case VT_UI2:
        return trees::setAttribute(element, name, qulonglong{value.uiVal});
    case VT_UI4:
    case VT_UINT:
        return trees::setAttribute(element, name, qulonglong{value.ulVal});
    case VT_UI8:
        return trees::setAttribute(element, name, qulonglong{value.ullVal});
    case VT_R4:
        return setNumber(element, name, value.fltVal);
    case VT_R8:
    case VT_DATE:
        return setNumber(element, name, value.dblVal);
    default:
        return;
    }
}

} // namespace

HRESULT nodeName(const NodeRef& self, BSTR* name)
{
    return storeText(name ? self.node.nodeName() : QString(), name);
}

HRESULT storeText(const QString& text, BSTR* out)
{
    if (!out)
        return S_FALSE;
    *out = text::toBstr(text);
    return S_OK;
}

HRESULT storeValue(const QString& value, VARIANT* out)
{
    if (!out)
        return S_FALSE;
    text::putString(value, out);
    return S_OK;
}

HRESULT setNodeValue(const NodeRef& self, const wchar_t* text)
{
    trees::setNodeValue(self, text::fromWide(text));
    return S_OK;
}

HRESULT setAttribute(const NodeRef& element, const wchar_t* name, const VARIANT& value)
{
    if (!name)
        return S_FALSE;
    setByType(element, text::fromWide(name), value);
    return S_OK;
}

} // namespace kelxml::dom
