// One function for each way of reading a VARIANT.

#include "text/values.h"

#include "text/strings.h"

namespace kelxml::text
{

std::optional<QString> readPath(const VARIANT& value)
{
    if (value.vt != VT_BSTR)
        return std::nullopt;
    return pathFromWide(value.bstrVal);
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

} // namespace kelxml::text
