// Converts texts for display and for the library's interfaces.

#pragma once

#include <string>
#include <string_view>

namespace tool
{

/// \throw UsageError if the text is not valid UTF-8
std::wstring toWide(std::string_view utf8);

/// Replaces a unit that is not a character by U+FFFD.
std::string toUtf8(std::wstring_view wide);

/// The text on one line. Escapes bytes that are not UTF-8, and characters that control a terminal or the
/// direction of writing.
std::string printable(std::string_view text);

/// The same in double quotes, with quotes and backslashes escaped too.
std::string inQuotes(std::string_view text);

} // namespace tool
