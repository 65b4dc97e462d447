// The plain road in both directions: Qt's own conversions, through a fixed scratch area on the way out.

#include "dom/text.h"

#include <array>
#include <vector>

namespace kelxml
{

namespace
{

constexpr int kScratchLength = 1024;

} // namespace

QString fromWide(const wchar_t* text)
{
    return QString::fromUcs4(reinterpret_cast<const char32_t*>(text), -1);
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
