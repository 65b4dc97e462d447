// Decides which paths may be opened.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtCore/QString>

#include <optional>
#include <string>
#include <utility>

namespace kelxml::files
{

/// A checked path, which came from a caller of the COM interfaces or of the filer. The check ensures that Qt
/// opens exactly the file that the caller named.
class Path
{
public:
    /// \return nothing if `path` is null or empty, if the codecs are destroyed, or if Qt would open a
    ///         different path. Qt changes a path that begins with a byte order mark, contains a `wchar_t`
    ///         that is not a character, or contains a character that the encoding of file names cannot
    ///         represent.
    static std::optional<Path> from(const wchar_t* path);
    /// If `path` is a `VT_BSTR`, calls the other `from` with the string in `path`; otherwise returns nothing.
    static std::optional<Path> from(const VARIANT& path);

    const QString& name() const { return m_name; }

private:
    explicit Path(QString name) : m_name(std::move(name)) {}

    QString m_name;
};

/// \return the reason why `path` must not be passed to the system; null if it may be passed
const char* refusalOf(const std::string& path);

} // namespace kelxml::files
