// Converts texts for display and for the library's interfaces.

#pragma once

#include <string>
#include <string_view>

namespace tool
{

/// \throw UsageError if the text is not valid UTF-8
std::wstring toWide(std::string_view utf8);

/// Converts UTF-32 to UTF-8. Replaces each `wchar_t` that is not a Unicode character with U+FFFD.
std::string toUtf8(std::wstring_view wide);

/// Returns the text as one line. Escapes characters that control a terminal or the direction of text. If the
/// text is not valid UTF-8, escapes all control characters below U+0020 and all bytes above 0x7E.
std::string printable(std::string_view text);

/// Returns the text as one line in double quotes. Escapes the same characters as `printable`. Also escapes
/// quotes and backslashes, if the text is valid UTF-8.
std::string inQuotes(std::string_view text);

} // namespace tool
