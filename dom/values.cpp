// One function for each way of reading a VARIANT.

#include "dom/values.h"

#include "dom/text.h"

namespace kelxml
{

std::optional<QString> readPath(const VARIANT& value)
{
    if (value.vt != VT_BSTR)
        return std::nullopt;
    return fromWide(value.bstrVal);
}

int readInteger(const VARIANT& value)
{
    switch (value.vt) {
    case VT_I2:
        return value.iVal;
    case VT_I4:
    case VT_INT:
        return value.lVal;
    default:
        return 0;
    }
}

void setAttributeValue(QDomElement& element, const QString& name, const VARIANT& value)
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

} // namespace kelxml
