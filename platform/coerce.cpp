// Converts numbers, booleans and texts into each other, and asks objects for interfaces.

#include "platform/coerce.h"
#include "platform/default_floating_point.h"

#include <QtCore/QLocale>
#include <QtCore/QString>
#include <algorithm>
#include <cmath>
#include <limits>

namespace kelcom
{
namespace
{

constexpr std::int64_t kCurrencyScale = 10000;
/// Numbers of significant digits when a float or a double becomes a text. With nine digits, the float 0.1
/// would become 0.100000001.
constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 15;
constexpr int kFloatExponentSize = 8;
constexpr int kDoubleExponentSize = 11;

/// Maximum length of a text that `textOf` converts. A longer text may not fit in a `QString`, so `textOf`
/// returns an empty string instead. An empty string is neither a number nor a boolean.
constexpr UINT kLongestText = std::numeric_limits<int>::max() / sizeof(wchar_t);

QString textOf(BSTR text)
{
    const UINT length = SysStringLen(text);
    return length > kLongestText ? QString() : QString::fromWCharArray(text, static_cast<int>(length));
}

/// The size in bytes of a value of this type. Returns 0 for types that cannot be passed by reference, and for
/// `VT_VARIANT`, which `dereference` handles itself.
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

/// A number as a sign and a fraction. The denominator is 0 for infinity, for NaN, and for numbers that are
/// far too large for 32 bits.
struct Fraction
{
    bool isNegative;
    std::uint64_t numerator;
    std::uint64_t denominator;
};

Fraction fractionOf(std::int64_t integer, std::uint64_t denominator = 1)
{
    const auto bits = static_cast<std::uint64_t>(integer);
    return {integer < 0, integer < 0 ? 0 - bits : bits, denominator};
}

/// Decodes an IEEE 754 number. For a 32-bit number, the upper half of `bits` has the number, and the lower
/// half is 0. Does not use floating-point operations, because such operations could trap: the host may have
/// unmasked the floating-point traps.
Fraction decodeFloat(std::uint64_t bits, int exponentSize)
{
    const int mantissaSize = 63 - exponentSize;
    const int highest = (1 << exponentSize) - 1, bias = highest / 2;
    const std::uint64_t implied = std::uint64_t{1} << mantissaSize;
    const bool isNegative = bits >> 63 != 0;
    const std::uint64_t mantissa = bits & (implied - 1);
    const int exponent = static_cast<int>(bits >> mantissaSize) & highest;
    const int shift = mantissaSize + bias - std::max(exponent, 1); // the number is numerator / 2^shift
    if (exponent == highest || shift < 0)
        return {isNegative, 1, 0};
    // The numerator is less than 2^56. So with a denominator of 2^62, the number is less than one half and
    // rounds to 0, and a larger denominator is not needed.
    return {isNegative, exponent == 0 ? mantissa : implied | mantissa,
            std::uint64_t{1} << std::min(shift, 62)};
}

/// Rounds the absolute value to the nearest integer. A number halfway between two integers becomes the even
/// integer.
std::uint64_t rounded(const Fraction& number)
{
    const std::uint64_t whole = number.numerator / number.denominator;
    const std::uint64_t rest = number.numerator % number.denominator * 2;
    const bool isHalf = rest == number.denominator;
    return rest > number.denominator || (isHalf && whole % 2 == 1) ? whole + 1 : whole;
}

/// Reads the integer or boolean in `plain`, or 0 if `plain` is `VT_EMPTY`.
/// \return false if `plain` is of any other type, or is `VT_UI8`, whose values may not fit in a signed 64-bit
///         integer
bool readExactInteger(const VARIANT& plain, std::int64_t& integer)
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

HRESULT parseNumber(BSTR text, Fraction& number)
{
    const DefaultFloatingPoint environment;
    bool isNumber = false;
    const double value = textOf(text).toDouble(&isNumber);
    if (!isNumber)
        return std::isinf(value) ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
    if (!std::isfinite(value))
        return DISP_E_TYPEMISMATCH; // the text is "inf" or "nan"
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    number = decodeFloat(bits, kDoubleExponentSize);
    return S_OK;
}

HRESULT readNumber(const VARIANT& plain, Fraction& number)
{
    std::int64_t integer = 0;
    if (readExactInteger(plain, integer)) {
        number = fractionOf(integer);
        return S_OK;
    }
    switch (plain.vt) {
    case VT_UI8:
        number = {false, plain.ullVal, 1};
        return S_OK;
    case VT_R4:
        number = decodeFloat(std::uint64_t{plain.ulVal} << 32, kFloatExponentSize);
        return S_OK;
    case VT_R8:
    case VT_DATE:
        number = decodeFloat(plain.ullVal, kDoubleExponentSize);
        return S_OK;
    case VT_CY:
        number = fractionOf(plain.cyVal.int64, kCurrencyScale);
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

HRESULT floatText(const VARIANT& plain, QString& text)
{
    const DefaultFloatingPoint environment;
    const bool isFloat = plain.vt == VT_R4;
    const double number = isFloat ? static_cast<double>(plain.fltVal) : plain.dblVal;
    if (!std::isfinite(number))
        return DISP_E_OVERFLOW;
    text = QLocale::c().toString(number, 'G', isFloat ? kFloatDigits : kDoubleDigits);
    return S_OK;
}

HRESULT numberText(const VARIANT& plain, QString& text)
{
    std::int64_t integer = 0;
    if (plain.vt == VT_EMPTY)
        text.clear();
    else if (plain.vt == VT_BOOL)
        text = QString::number(plain.boolVal == VARIANT_FALSE ? VARIANT_FALSE : VARIANT_TRUE);
    else if (readExactInteger(plain, integer))
        text = QString::number(integer);
    else if (plain.vt == VT_UI8)
        text = QString::number(static_cast<qulonglong>(plain.ullVal));
    else if (plain.vt == VT_CY)
        text = currencyText(plain.cyVal.int64);
    else if (plain.vt == VT_R4 || plain.vt == VT_R8 || plain.vt == VT_DATE)
        return floatText(plain, text);
    else
        return DISP_E_TYPEMISMATCH;
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
    Fraction number{};
    const HRESULT hr = readNumber(plain, number);
    if (FAILED(hr))
        return hr;
    if (number.denominator == 0)
        return DISP_E_OVERFLOW;
    const std::uint64_t size = rounded(number);
    if (size > std::uint64_t{std::numeric_limits<std::int32_t>::max()} + (number.isNegative ? 1 : 0))
        return DISP_E_OVERFLOW;
    const auto positive = static_cast<std::int64_t>(size);
    integer = static_cast<std::int32_t>(number.isNegative ? -positive : positive);
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
    Fraction number{};
    const HRESULT hr = readNumber(plain, number);
    if (SUCCEEDED(hr))
        boolean = number.numerator == 0 ? VARIANT_FALSE : VARIANT_TRUE;
    return hr;
}

HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& newText)
{
    if (plain.vt == VT_BSTR) {
        text = plain.bstrVal;
        return S_OK;
    }
    QString number;
    const HRESULT hr = numberText(plain, number);
    if (FAILED(hr))
        return hr;
    newText = kel::Bstr(number.toStdWString().c_str());
    text = newText.get();
    return newText ? S_OK : E_OUTOFMEMORY;
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
