// UTF-8 and wide characters.

#include "text.h"

#include "host.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace host
{
namespace
{

/// The characters of one length in UTF-8.
struct Form
{
    std::size_t length;
    char32_t smallest;
    /// The marker bits of the first byte and the mask that isolates them.
    unsigned char marker;
    unsigned char mask;
};

constexpr Form kForms[] = {
    {1, 0, 0x00, 0x80}, {2, 0x80, 0xC0, 0xE0}, {3, 0x800, 0xE0, 0xF0}, {4, 0x10000, 0xF0, 0xF8}};

bool isCharacter(char32_t code)
{
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

/// Takes one character off the front of `bytes`, which are not empty.
std::optional<char32_t> takeCharacter(std::string_view& bytes)
{
    const auto byteAt = [&bytes](std::size_t place) { return static_cast<unsigned char>(bytes[place]); };
    const auto form = std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& known) {
        return (byteAt(0) & known.mask) == known.marker;
    });
    if (form == std::end(kForms) || bytes.size() < form->length)
        return std::nullopt;
    char32_t code = byteAt(0) & static_cast<unsigned char>(~form->mask);
    for (std::size_t place = 1; place < form->length; ++place) {
        if ((byteAt(place) & 0xC0U) != 0x80U)
            return std::nullopt;
        code = code << 6U | (byteAt(place) & 0x3FU);
    }
    if (code < form->smallest || !isCharacter(code))
        return std::nullopt;
    bytes.remove_prefix(form->length);
    return code;
}

void putCharacter(char32_t code, std::string& utf8)
{
    const auto form = std::find_if(std::rbegin(kForms), std::rend(kForms),
                                   [=](const Form& known) { return code >= known.smallest; });
    std::size_t shift = 6 * (form->length - 1);
    utf8 += static_cast<char>(form->marker | code >> shift);
    while (shift > 0) {
        shift -= 6;
        utf8 += static_cast<char>(0x80U | (code >> shift & 0x3FU));
    }
}

bool isAllowedInXml(char32_t code)
{
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return isCharacter(code) && code != 0xFFFE && code != 0xFFFF;
}

} // namespace

std::optional<std::wstring> toWide(std::string_view utf8)
{
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::optional<char32_t> character = takeCharacter(utf8);
        if (!character)
            return std::nullopt;
        wide += static_cast<wchar_t>(*character);
    }
    return wide;
}

void requireXmlCharacters(std::wstring_view text)
{
    for (const wchar_t unit : text)
        if (const auto code = static_cast<char32_t>(unit); !isAllowedInXml(code)) {
            char name[16];
            std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(code));
            throw UsageError(std::string("XML does not allow the character ") + name);
        }
}

std::string toUtf8(std::wstring_view wide)
{
    std::string utf8;
    utf8.reserve(wide.size());
    for (const wchar_t unit : wide) {
        const auto code = static_cast<char32_t>(unit);
        putCharacter(isCharacter(code) ? code : U'\ufffd', utf8);
    }
    return utf8;
}

std::string quoted(std::wstring_view text)
{
    std::string line = "\"";
    for (const char byte : toUtf8(text)) {
        const auto code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\')
            (line += '\\') += byte;
        else if (byte == '\n')
            line += "\\n";
        else if (byte == '\t')
            line += "\\t";
        else if (byte == '\r')
            line += "\\r";
        else if (code < 0x20 || code == 0x7F) {
            char escape[5];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(code));
            line += escape;
        } else
            line += byte;
    }
    return line + '"';
}

} // namespace host
