// A unit is one `wchar_t` of a wide string or one `QChar` of a QString. Most texts are copied unit by unit,
// which is several times faster than Qt's conversions. Qt converts only texts that contain surrogates or
// characters above U+FFFF, and wide strings that begin with a byte order mark.

#include "text/strings.h"

#include <cstdint>
#include <cwchar>
#include <limits>
#include <memory>
#include <new>
#include <string>

namespace kelxml::text
{

namespace
{

constexpr int kScratchLength = 1024;

/// Maximum length of a wide string. Qt counts the bytes of a text in an `int`. For a longer string,
/// `copyUnitsOr` throws `std::bad_alloc`.
constexpr std::size_t kLongestText = std::numeric_limits<int>::max() / sizeof(wchar_t) - 16;

/// Copies `text` unit by unit. If `bitsOf` returns a value above 0xFFFF for any unit, or if `text` begins
/// with a byte order mark, returns the result of `convert` instead. `convert` calls Qt, which removes the
/// mark.
/// \param result a string that is no longer needed; its memory is reused for the returned string
template <class BitsOf, class Convert>
QString copyUnitsOr(const wchar_t* text, BitsOf bitsOf, Convert convert, QString result = {})
{
    if (!text)
        return {};
    const std::size_t length = std::wcslen(text);
    if (length > kLongestText)
        throw std::bad_alloc();
    if (result.isNull())
        result = QString(static_cast<int>(length), Qt::Uninitialized); // allocates exactly the length
    else
        result.resize(static_cast<int>(length));
    QChar* const out = result.data();
    std::uint32_t combined = 0;
    for (std::size_t index = 0; index < length; ++index) {
        const auto unit = static_cast<char32_t>(text[index]);
        combined |= bitsOf(unit);
        out[index] = QChar(static_cast<char16_t>(unit));
    }
    if (combined <= 0xFFFF && *text != QChar::ByteOrderMark)
        return result;
    return convert(reinterpret_cast<const char32_t*>(text), static_cast<int>(length));
}

/// Converts `text`, and writes U+FFFD for each unit that is not a character. A high surrogate and a low
/// surrogate that follows it stay, because `QString::fromUcs4` turns these two units into one character.
QString fromUcs4ReplacingInvalid(const char32_t* text, int length)
{
    std::u32string units(text, static_cast<std::size_t>(length));
    for (std::size_t index = 0; index < units.size(); ++index) {
        char32_t& unit = units[index];
        if (QChar::isHighSurrogate(unit) && QChar::isLowSurrogate(units[index + 1]))
            ++index;
        else if (!isCharacter(unit))
            unit = QChar::ReplacementCharacter;
    }
    return QString::fromUcs4(units.data(), length);
}

int codePointsOf(const QString& text)
{
    int count = text.size();
    for (int index = 1; index < text.size(); ++index)
        count -= text[index].isLowSurrogate() && text[index - 1].isHighSurrogate() ? 1 : 0;
    return count;
}

/// Writes the code points of `text` and a terminating zero to `out`.
/// \param out must have room for `text.size() + 1` units
void widen(const QString& text, wchar_t* out)
{
    const QChar* const units = text.constData();
    int length = text.size();
    std::uint32_t surrogates = 0;
    for (int index = 0; index < length; ++index) {
        const std::uint32_t unit = units[index].unicode();
        surrogates |= static_cast<std::uint32_t>((unit & 0xF800) == 0xD800);
        out[index] = static_cast<wchar_t>(unit);
    }
    if (surrogates != 0)
        length = text.toWCharArray(out);
    out[length] = L'\0';
}

} // namespace

QString fromWide(const wchar_t* text)
{
    return copyUnitsOr(
        text, [](char32_t unit) { return unit; },
        [](const char32_t* units, int length) { return QString::fromUcs4(units, length); });
}

QString charactersFromWide(const wchar_t* text, QString&& reused)
{
    constexpr int kAbove16Bits = 16;
    const auto bitsOf = [](char32_t unit) {
        return unit | static_cast<std::uint32_t>(QChar::isSurrogate(unit)) << kAbove16Bits;
    };
    return copyUnitsOr(text, bitsOf, fromUcs4ReplacingInvalid, std::move(reused));
}

BSTR toBstr(const QString& text)
{
    wchar_t scratch[kScratchLength]; // not initialised: zeroing 4096 bytes for every short name is slow
    if (text.size() < kScratchLength) {
        widen(text, scratch);
        return SysAllocString(scratch);
    }
    if (text.size() < 2 * kScratchLength && codePointsOf(text) < kScratchLength) {
        scratch[text.toWCharArray(scratch)] = L'\0';
        return SysAllocString(scratch);
    }
    const std::unique_ptr<wchar_t[]> whole(new wchar_t[static_cast<std::size_t>(text.size()) + 1]);
    widen(text, whole.get());
    return SysAllocString(whole.get());
}

void putString(const QString& text, VARIANT* value)
{
    const BSTR string = toBstr(text);
    value->vt = VT_BSTR;
    value->bstrVal = string;
}

} // namespace kelxml::text
