/// \file
/// What documents and writers throw. Included by KelXmlLib/kel.h.

#pragma once

#include "KelComWrapper/error.h"
#include "KelComWrapper/export.h"

#include <string>

namespace kel
{

/// Why a document could not be loaded or parsed. `what()` is one line, such as
/// `settings.xml:3:14: tag mismatch` or `settings.xml: No such file or directory`.
class KEL_EXPORT LoadError : public Error
{
public:
    /// The kind of failure.
    enum class Kind {
        unreadable,    ///< the file is missing, a directory, or not readable; `reason` is the system's
        empty,         ///< there is no text
        notWellFormed, ///< `line` and `column` say where, `reason` says what
        beyondLimit,   ///< it exceeds a limit of the library; `reason` says which
    };

    /// \param kind the kind of failure
    /// \param source the file's path, or empty for a text that was passed
    /// \param reason what went wrong, without source and position
    /// \param line, column counted from 1; 0 if there is no position
    LoadError(Kind kind, const std::string& source, const std::string& reason, int line = 0, int column = 0);
    ~LoadError() override;

    /// The kind of failure.
    Kind kind() const noexcept { return m_kind; }
    /// The line, counted from 1; 0 if the text is not valid UTF-8, and for errors other than `notWellFormed`.
    int line() const noexcept { return m_line; }
    /// The column, counted from 1; 0 if the line is 0.
    int column() const noexcept { return m_column; }
    /// What went wrong, without the file's name and the position.
    const std::string& reason() const noexcept { return m_reason; }

private:
    Kind m_kind;
    int m_line;
    int m_column;
    std::string m_reason;
};

/// Why a file could not be written. `what()` is one line, such as
/// `settings.xml: No space left on device`.
class KEL_EXPORT SaveError : public Error
{
public:
    /// \param path of the file
    /// \param reason the system's, or what else went wrong
    SaveError(const std::string& path, const std::string& reason);
    ~SaveError() override;

    /// What went wrong, without the file's name.
    const std::string& reason() const noexcept { return m_reason; }

private:
    std::string m_reason;
};

} // namespace kel
