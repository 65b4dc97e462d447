// Each rule is one call into Qt with the conversions around it.

#include "dom/content.h"

#include "guards/tree.h"
#include "text/strings.h"

namespace kelxml
{

namespace
{

/// VT_BYREF is not followed: the whole type has to match.
void setValue(QDomElement element, const QString& name, const VARIANT& value)
{
    switch (value.vt) {
    case VT_BSTR:
        return element.setAttribute(name, fromWide(value.bstrVal));
    case VT_I2:
        return element.setAttribute(name, qlonglong{value.iVal});
    case VT_I4:
    case VT_INT:
        return element.setAttribute(name, qlonglong{value.lVal});
    case VT_I8:
        return element.setAttribute(name, qlonglong{value.llVal});
    case VT_UI2:
        return element.setAttribute(name, qulonglong{value.uiVal});
    case VT_UI4:
    case VT_UINT:
        return element.setAttribute(name, qulonglong{value.ulVal});
    case VT_UI8:
        return element.setAttribute(name, qulonglong{value.ullVal});
    case VT_R4:
        return element.setAttribute(name, value.fltVal);
    case VT_R8:
    case VT_DATE:
        return element.setAttribute(name, value.dblVal);
    default:
        return;
    }
}

} // namespace

HRESULT nodeName(const NodeRef& self, BSTR* name)
{
    return giveText(name ? self.node.nodeName() : QString(), name);
}

HRESULT giveText(const QString& text, BSTR* out)
{
    if (!out)
        return S_FALSE;
    *out = toBstr(text);
    return S_OK;
}

HRESULT giveValue(const QString& value, VARIANT* out)
{
    if (!out)
        return S_FALSE;
    putString(value, out);
    return S_OK;
}

HRESULT setNodeValue(const NodeRef& self, const wchar_t* text)
{
    guards::setNodeValue(self, fromWide(text));
    return S_OK;
}

HRESULT setAttribute(const NodeRef& element, const wchar_t* name, const VARIANT& value)
{
    if (!name)
        return S_FALSE;
    const QString text = fromWide(name);
    guards::prepareSettingAttribute(element, text);
    setValue(element.node.toElement(), text, value);
    return S_OK;
}

} // namespace kelxml
