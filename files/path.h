// Which paths may be opened.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtCore/QString>

#include <optional>
#include <string>
#include <utility>

namespace kelxml::files
{

/// Whether Qt's codecs still exist. At exit they are destroyed before the globals that were created earlier
/// than they were. No file is opened after that.
bool hasCodecs();

/// A path that a caller of the COM interfaces or of the filer passed. Qt opens exactly the file that it
/// names.
class Path
{
public:
    /// \return nothing for an empty path, after the codecs are destroyed, and for a path that Qt would change
    /// into another file's path. Qt does so if a unit is not a character, or if the encoding of file names
    /// lacks a character.
    static std::optional<Path> from(const wchar_t* path);
    /// The same for a `VT_BSTR`. \return nothing for any other type
    static std::optional<Path> from(const VARIANT& path);

    const QString& name() const { return m_name; }

private:
    explicit Path(QString name) : m_name(std::move(name)) {}

    QString m_name;
};

/// Whether a path in the system's own bytes may be opened.
bool isUsable(const std::string& path);
/// The reason for refusing an unusable path.
constexpr const char* kNotUsable = "the path has a zero in it, or the process is ending";

} // namespace kelxml::files
