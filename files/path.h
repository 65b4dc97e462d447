// Decides which paths may be opened.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtCore/QString>

#include <optional>
#include <string>
#include <utility>

namespace kelxml::files
{

/// Whether Qt's text codecs still exist. The process destroys them at exit. A destructor that runs later,
/// such as one of a global object, must not open a file.
bool hasCodecs();

/// A checked path from a caller of the COM interfaces or of the filer. Qt opens exactly the file that the
/// caller named.
class Path
{
public:
    /// \return nothing if the path is empty, if the codecs are destroyed, or if Qt would open a different
    ///         path. Qt changes a path that begins with a byte order mark, contains a `wchar_t` that is not a
    ///         character, or contains a character that the encoding of file names cannot represent.
    static std::optional<Path> from(const wchar_t* path);
    /// Checks the string of a `VT_BSTR` in the same way. \return nothing for any other type
    static std::optional<Path> from(const VARIANT& path);

    const QString& name() const { return m_name; }

private:
    explicit Path(QString name) : m_name(std::move(name)) {}

    QString m_name;
};

/// \return why the bytes of `path` must not be passed to the system as a file name; null if they may
const char* refusalOf(const std::string& path);

} // namespace kelxml::files
