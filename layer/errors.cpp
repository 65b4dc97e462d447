// Composes the one-line messages of `LoadError` and `SaveError`.

#include "KelXmlLib/kel/errors.h"

#include "layer/text.h"

namespace kel
{

namespace
{

/// Returns the part of a message before the reason, such as "settings.xml:3:14".
std::string location(const std::string& source, int line, int column)
{
    std::string location = source.empty() ? "text" : detail::inOneLine(source);
    if (line > 0)
        location += ':' + std::to_string(line) + ':' + std::to_string(column);
    return location;
}

} // namespace

LoadError::LoadError(Kind kind, const std::string& source, const std::string& reason, int line, int column)
    : Error(S_FALSE, location(source, line, column), reason), m_kind(kind), m_line(line), m_column(column),
      m_reason(reason)
{}

LoadError::~LoadError() = default;

SaveError::SaveError(const std::string& path, const std::string& reason)
    : Error(S_FALSE, path.empty() ? "''" : detail::inOneLine(path), reason), m_reason(reason)
{}

SaveError::~SaveError() = default;

} // namespace kel
