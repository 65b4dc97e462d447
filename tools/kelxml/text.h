// Converts texts for display and for the library's interfaces.

#pragma once

#include <string>
#include <string_view>

namespace tool
{

/// \throw UsageError if the text is not valid UTF-8
std::wstring toWide(std::string_view utf8);

/// Replaces each unit that is not a character with U+FFFD.
std::string toUtf8(std::wstring_view wide);

/// Returns the text as one line. Escapes bytes that are not UTF-8, and characters that control a terminal or
/// the direction of text.
std::string printable(std::string_view text);

/// Like `printable`, but in double quotes. Also escapes quotes and backslashes.
std::string inQuotes(std::string_view text);

} // namespace tool
