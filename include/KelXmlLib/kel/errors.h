/// \file
/// Errors of loading and saving. KelXmlLib/kel.h includes this header.

#pragma once

#include "KelComWrapper/error.h"
#include "KelComWrapper/export.h"

#include <string>

namespace kel
{

/// Says why a document could not be loaded or parsed. `what()` returns one line, for example:
/// - `settings.xml:3:14: tag mismatch`
/// - `settings.xml: No such file or directory`
class KEL_EXPORT LoadError : public Error
{
public:
    /// The kind of failure.
    enum class Kind {
        unreadable,    ///< the file is missing, is a directory, or cannot be read; `reason` says why
        empty,         ///< the file or text is empty
        notWellFormed, ///< the XML is faulty: `line` and `column` say where, and `reason` says why
        beyondLimit,   ///< the file or text exceeds a limit of this library; `reason` names the limit
    };

    /// \param kind the kind of failure
    /// \param source the path of the file; empty if a text was parsed
    /// \param reason what went wrong, without the path and the position
    /// \param line the line of the fault, counted from 1; 0 if the position is unknown
    /// \param column the column of the fault, counted from 1; 0 if the position is unknown
    LoadError(Kind kind, const std::string& source, const std::string& reason, int line = 0, int column = 0);
    ~LoadError() override;

    /// The kind of failure.
    Kind kind() const noexcept { return m_kind; }
    /// The line of the fault, counted from 1. Returns 0 if the kind is not `notWellFormed`. Also returns 0 if
    /// `Document::parse` received a text with invalid UTF-8, an invalid wide character or a null character.
    int line() const noexcept { return m_line; }
    /// The column of the fault, counted from 1 in UTF-16 units. Returns 0 if `line` returns 0.
    int column() const noexcept { return m_column; }
    /// What went wrong, without the path and the position.
    const std::string& reason() const noexcept { return m_reason; }

private:
    Kind m_kind;
    int m_line;
    int m_column;
    std::string m_reason;
};

/// Says why a file could not be written. `what()` returns one line, for example:
/// - `settings.xml: No space left on device`
class KEL_EXPORT SaveError : public Error
{
public:
    /// \param path the path of the file
    /// \param reason what went wrong, without the path
    SaveError(const std::string& path, const std::string& reason);
    ~SaveError() override;

    /// What went wrong, without the path.
    const std::string& reason() const noexcept { return m_reason; }

private:
    std::string m_reason;
};

} // namespace kel
