// Both directions take most text unit by unit, which is several times faster than Qt's conversions, and leave
// to those what is not one unit on either side.

#include "text/strings.h"

#include <cstdint>
#include <cwchar>
#include <limits>
#include <memory>
#include <new>

namespace kelxml
{

namespace
{

constexpr int kScratchLength = 1024;

/// Qt counts the bytes of a text in an `int`; longer text cannot be held and counts as out of memory.
constexpr std::size_t kLongestText = std::numeric_limits<int>::max() / sizeof(wchar_t) - 16;

/// \return whether that is all there is to do: one unit for each, and no byte order mark to take off
bool narrow(const wchar_t* text, std::size_t length, QChar* out) noexcept
{
    std::uint32_t seen = 0;
    for (std::size_t index = 0; index < length; ++index) {
        const auto unit = static_cast<std::uint32_t>(text[index]);
        seen |= unit;
        out[index] = QChar(static_cast<char16_t>(unit));
    }
    return seen <= 0xFFFF && *text != QChar::ByteOrderMark;
}

/// Writes the text's code points and a zero behind them.
/// \param out has room for one more than the text has units
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
    if (!text)
        return {};
    const std::size_t length = std::wcslen(text);
    if (length > kLongestText)
        throw std::bad_alloc();
    QString narrowed(static_cast<int>(length), Qt::Uninitialized);
    if (narrow(text, length, narrowed.data()))
        return narrowed;
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(text), static_cast<int>(length));
}

BSTR toBstr(const QString& text)
{
    // A string never has more code points than UTF-16 units, so the unit count is room enough.
    if (text.size() < kScratchLength) {
        wchar_t scratch[kScratchLength]; // not zeroed: a name of eight characters would pay for 4096 bytes
        widen(text, scratch);
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

} // namespace kelxml
