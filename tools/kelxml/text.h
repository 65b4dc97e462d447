// Text between the command line, which is UTF-8, and the library, which takes 32-bit wide characters.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host
{

/// \return the text; nothing when `utf8` is not valid UTF-8
std::optional<std::wstring> toWide(std::string_view utf8);

/// \throw UsageError when XML 1.0 does not allow one of the characters: Qt would write it all the same, and
/// other parsers refuse the document
void requireXmlCharacters(std::wstring_view text);

/// What is no character becomes U+FFFD.
std::string toUtf8(std::wstring_view wide);

/// UTF-8 in double quotes and on one line: quotes, backslashes and control characters are escaped.
std::string quoted(std::wstring_view text);

} // namespace host
