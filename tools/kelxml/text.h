// Texts for people and for the library's interfaces.

#pragma once

#include <string>
#include <string_view>

namespace tool
{

/// \throw UsageError when the text is not valid UTF-8
std::wstring toWide(std::string_view utf8);

/// A unit that is not a character becomes U+FFFD.
std::string toUtf8(std::wstring_view wide);

/// The text on one line. Characters that control a terminal or the direction of writing are escaped, and
/// bytes that are not UTF-8.
std::string printable(std::string_view text);

/// The same in double quotes, with quotes and backslashes escaped.
std::string inQuotes(std::string_view text);

} // namespace tool
