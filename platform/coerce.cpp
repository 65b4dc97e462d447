// Numbers, booleans and texts to and fro, and objects to their interfaces.

#include "platform/coerce.h"

#include <QtCore/QLocale>
#include <QtCore/QString>
#include <cmath>
#include <limits>

namespace kelcom
{
namespace
{

constexpr std::int64_t kCurrencyScale = 10000;
/// The published digits of a text, few enough that 0.1 stays 0.1.
constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 15;

/// Longer texts, which Qt has no room for, hold no number and no word: they count as empty.
constexpr UINT kLongestText = std::numeric_limits<int>::max() / sizeof(wchar_t);

QString textOf(BSTR text)
{
    const UINT length = SysStringLen(text);
    return length > kLongestText ? QString() : QString::fromWCharArray(text, static_cast<int>(length));
}

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr ULONG kFloatInfinity = 0x7F800000;
constexpr std::uint64_t kDoubleInfinity = 0x7FF0000000000000;

/// By the bits, the sign shifted out: in a host that has unmasked floating-point traps, any operation on a
/// signalling NaN raises SIGFPE.
template <class Bits>
bool isNan(Bits number, Bits infinity)
{
    return number << 1 > infinity << 1;
}

/// The width of a value that a reference may lead to; 0 for a type that none may have.
std::size_t widthOf(VARTYPE type)
{
    switch (type) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return 8;
    default:
        return 0;
    }
}

HRESULT followOnce(const VARIANT& reference, VARIANT& plain)
{
    const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
    const std::size_t width = widthOf(type);
    if (width == 0 || !reference.byref)
        return DISP_E_TYPEMISMATCH;
    VARIANT value{};
    value.vt = type;
    std::memcpy(&value.llVal, reference.byref, width);
    plain = value;
    return S_OK;
}

/// The integer that a plain value holds, if it is of a type whose values all fit; nothing counts as 0.
bool readInteger(const VARIANT& plain, std::int64_t& integer)
{
    switch (plain.vt) {
    case VT_EMPTY:
        integer = 0;
        return true;
    case VT_I1:
        integer = plain.cVal;
        return true;
    case VT_UI1:
        integer = plain.bVal;
        return true;
    case VT_I2:
    case VT_BOOL:
        integer = plain.iVal;
        return true;
    case VT_UI2:
        integer = plain.uiVal;
        return true;
    case VT_I4:
    case VT_INT:
        integer = plain.lVal;
        return true;
    case VT_UI4:
    case VT_UINT:
        integer = plain.ulVal;
        return true;
    case VT_I8:
        integer = plain.llVal;
        return true;
    default:
        return false;
    }
}

HRESULT parseNumber(BSTR text, double& number)
{
    bool isNumber = false;
    const double value = textOf(text).toDouble(&isNumber);
    if (!isNumber)
        return std::isinf(value) ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
    if (!std::isfinite(value))
        return DISP_E_TYPEMISMATCH; // the word, not the number
    number = value;
    return S_OK;
}

/// Any number as a double, which holds every 32-bit integer exactly and tells zero from everything else. A
/// NaN comes out quiet: it may be compared for equality, and asked whether it is finite.
HRESULT readNumber(const VARIANT& plain, double& number)
{
    std::int64_t integer = 0;
    if (readInteger(plain, integer)) {
        number = static_cast<double>(integer);
        return S_OK;
    }
    switch (plain.vt) {
    case VT_UI8:
        number = static_cast<double>(plain.ullVal);
        return S_OK;
    case VT_R4:
        number = isNan(plain.ulVal, kFloatInfinity) ? kNan : static_cast<double>(plain.fltVal);
        return S_OK;
    case VT_R8:
    case VT_DATE:
        number = isNan(plain.ullVal, kDoubleInfinity) ? kNan : plain.dblVal;
        return S_OK;
    case VT_CY:
        number = static_cast<double>(plain.cyVal.int64) / static_cast<double>(kCurrencyScale);
        return S_OK;
    case VT_BSTR:
        return parseNumber(plain.bstrVal, number);
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

QString currencyText(std::int64_t amount)
{
    const std::int64_t whole = amount / kCurrencyScale;
    const std::int64_t part = std::abs(amount % kCurrencyScale);
    QString text = QString::number(whole);
    if (amount < 0 && whole == 0)
        text.prepend(QLatin1Char('-'));
    if (part != 0)
        text += QStringLiteral(".%1").arg(part, 4, 10, QLatin1Char('0'));
    while (part != 0 && text.endsWith(QLatin1Char('0')))
        text.chop(1);
    return text;
}

HRESULT numberText(const VARIANT& plain, QString& text)
{
    std::int64_t integer = 0;
    if (plain.vt == VT_EMPTY)
        text.clear();
    else if (plain.vt == VT_BOOL)
        text = QString::number(plain.boolVal == VARIANT_FALSE ? VARIANT_FALSE : VARIANT_TRUE);
    else if (readInteger(plain, integer))
        text = QString::number(integer);
    else if (plain.vt == VT_UI8)
        text = QString::number(static_cast<qulonglong>(plain.ullVal));
    else if (plain.vt == VT_CY)
        text = currencyText(plain.cyVal.int64);
    else {
        double number = 0;
        const HRESULT hr = readNumber(plain, number);
        if (FAILED(hr))
            return hr;
        if (!std::isfinite(number))
            return DISP_E_OVERFLOW;
        text = QLocale::c().toString(number, 'G', plain.vt == VT_R4 ? kFloatDigits : kDoubleDigits);
    }
    return S_OK;
}

} // namespace

HRESULT dereference(const VARIANT& argument, VARIANT& plain)
{
    if ((argument.vt & VT_BYREF) == 0) {
        plain = argument;
        return S_OK;
    }
    if (argument.vt != (VT_BYREF | VT_VARIANT))
        return followOnce(argument, plain);
    if (!argument.pvarVal)
        return DISP_E_TYPEMISMATCH;
    const VARIANT variable = *argument.pvarVal;
    if ((variable.vt & VT_BYREF) != 0)
        return followOnce(variable, plain);
    plain = variable;
    return S_OK;
}

HRESULT toInteger(const VARIANT& plain, std::int32_t& integer)
{
    double number = 0;
    const HRESULT hr = readNumber(plain, number);
    if (FAILED(hr))
        return hr;
    if (!std::isfinite(number))
        return DISP_E_OVERFLOW; // before arithmetic, which a host may have made to trap
    // Unlike the rounding functions, this depends on no rounding mode that a host may have set.
    const double rounded = number - std::remainder(number, 1.0);
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max()))
        return DISP_E_OVERFLOW;
    integer = static_cast<std::int32_t>(rounded);
    return S_OK;
}

HRESULT toBoolean(const VARIANT& plain, VARIANT_BOOL& boolean)
{
    if (plain.vt == VT_BOOL) {
        boolean = plain.boolVal;
        return S_OK;
    }
    if (plain.vt == VT_BSTR)
        for (const VARIANT_BOOL value : {VARIANT_FALSE, VARIANT_TRUE}) {
            const auto word = value == VARIANT_FALSE ? QLatin1String("false") : QLatin1String("true");
            if (textOf(plain.bstrVal).compare(word, Qt::CaseInsensitive) == 0) {
                boolean = value;
                return S_OK;
            }
        }
    double number = 0;
    const HRESULT hr = readNumber(plain, number);
    if (SUCCEEDED(hr))
        boolean = number == 0 ? VARIANT_FALSE : VARIANT_TRUE;
    return hr;
}

HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& made)
{
    if (plain.vt == VT_BSTR) {
        text = plain.bstrVal;
        return S_OK;
    }
    QString number;
    const HRESULT hr = numberText(plain, number);
    if (FAILED(hr))
        return hr;
    made = kel::Bstr(number.toStdWString().c_str());
    text = made.get();
    return made ? S_OK : E_OUTOFMEMORY;
}

HRESULT toObject(const VARIANT& plain, const GUID& iid, kel::ComPtr<IUnknown>& object)
{
    if (plain.vt != VT_DISPATCH && plain.vt != VT_UNKNOWN)
        return DISP_E_TYPEMISMATCH;
    if (!plain.punkVal) {
        object.reset();
        return S_OK;
    }
    void* found = nullptr;
    if (FAILED(plain.punkVal->QueryInterface(iid, &found)) || !found)
        return DISP_E_TYPEMISMATCH;
    object = kel::ComPtr<IUnknown>::adopt(static_cast<IUnknown*>(found));
    return S_OK;
}

} // namespace kelcom
