// Converts between UTF-8 and UTF-32 with `std::filesystem::path`.

#include "text.h"

#include "commands.h"

#include <cstdio>
#include <filesystem>

namespace tool
{
namespace
{

bool isCharacter(char32_t code)
{
    return code < 0xD800 || (code > 0xDFFF && code <= 0x10FFFF);
}

std::string encode(const std::u32string& text)
{
    return std::filesystem::path(text).u8string();
}

std::u32string decode(std::string_view utf8)
{
    return std::filesystem::u8path(utf8).u32string();
}

/// Whether the character is a C0 or C1 control character, breaks a line, is invisible, or changes the
/// direction of text.
bool isControl(char32_t code)
{
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x061C ||
           (code >= 0x200B && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF;
}

std::u32string escaped(char32_t code, const char* format)
{
    char escape[16];
    std::snprintf(escape, sizeof escape, format, static_cast<unsigned>(code));
    const std::string_view text = escape;
    return {text.begin(), text.end()};
}

std::u32string escapeOf(char32_t code)
{
    const std::size_t known = std::string_view("\n\t\r").find(static_cast<char>(code));
    if (code >= 0x80 || known == std::string_view::npos)
        return escaped(code, "\\u%04X");
    return {U'\\', U"ntr"[known]};
}

/// \param isQuoted whether to escape quotes and backslashes as well
std::string escape(std::string_view text, bool isQuoted)
{
    std::u32string line;
    try {
        for (const char32_t code : decode(text))
            if (isControl(code))
                line += escapeOf(code);
            else if (isQuoted && (code == U'"' || code == U'\\'))
                (line += U'\\') += code;
            else
                line += code;
    } catch (const std::filesystem::filesystem_error&) { // the text is not valid UTF-8
        line.clear();
        for (const char byte : text)
            if (const auto code = static_cast<unsigned char>(byte); code < ' ' || code >= 0x7F)
                line += escaped(code, "\\x%02X");
            else
                line += code;
    }
    return encode(line);
}

} // namespace

std::wstring toWide(std::string_view utf8)
{
    try {
        const std::u32string text = decode(utf8);
        return {text.begin(), text.end()};
    } catch (const std::filesystem::filesystem_error&) {
        throw UsageError("an argument is not valid UTF-8");
    }
}

std::string toUtf8(std::wstring_view wide)
{
    std::u32string text(wide.begin(), wide.end());
    for (char32_t& code : text)
        if (!isCharacter(code))
            code = U'\ufffd';
    return encode(text);
}

std::string printable(std::string_view text)
{
    return escape(text, false);
}

std::string inQuotes(std::string_view text)
{
    return '"' + escape(text, true) + '"';
}

} // namespace tool
