// Composes the readable line of each error.

#include "KelXmlLib/kel/errors.h"

#include "layer/text.h"

namespace kel
{

namespace
{

/// The part before the reason.
std::string place(const std::string& source, int line, int column)
{
    std::string place = source.empty() ? "text" : detail::inOneLine(source);
    if (line > 0)
        place += ':' + std::to_string(line) + ':' + std::to_string(column);
    return place;
}

} // namespace

LoadError::LoadError(Kind kind, const std::string& source, const std::string& reason, int line, int column)
    : Error(S_FALSE, place(source, line, column), reason), m_kind(kind), m_line(line), m_column(column),
      m_reason(reason)
{}

LoadError::~LoadError() = default;

SaveError::SaveError(const std::string& path, const std::string& reason)
    : Error(S_FALSE, path.empty() ? "''" : detail::inOneLine(path), reason), m_reason(reason)
{}

SaveError::~SaveError() = default;

} // namespace kel
