// The plain road in both directions: Qt's own conversions, through a fixed scratch area on the way out.

#include "dom/text.h"

#include <array>
#include <cwchar>
#include <limits>
#include <new>
#include <vector>

namespace kelxml
{

namespace
{

constexpr int kScratchLength = 1024;

/// Qt counts the bytes of a text in an `int`; longer text cannot be held and counts as out of memory.
constexpr std::size_t kLongestText = std::numeric_limits<int>::max() / sizeof(wchar_t) - 16;

} // namespace

QString fromWide(const wchar_t* text)
{
    if (!text)
        return {};
    const std::size_t length = std::wcslen(text);
    if (length > kLongestText)
        throw std::bad_alloc();
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(text), static_cast<int>(length));
}

BSTR toBstr(const QString& text)
{
    // A string never has more code points than UTF-16 units, so the unit count is room enough.
    if (text.size() < kScratchLength) {
        std::array<wchar_t, kScratchLength> scratch{};
        text.toWCharArray(scratch.data());
        return SysAllocString(scratch.data());
    }
    std::vector<wchar_t> whole(static_cast<std::size_t>(text.size()) + 1, L'\0');
    text.toWCharArray(whole.data());
    return SysAllocString(whole.data());
}

void putString(const QString& text, VARIANT* value)
{
    const BSTR string = toBstr(text);
    value->vt = VT_BSTR;
    value->bstrVal = string;
}

} // namespace kelxml
