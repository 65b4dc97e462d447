// Which paths may be opened.

#pragma once

#include "KelComWrapper/variant.h"

#include <QtCore/QString>

#include <optional>
#include <string>
#include <utility>

namespace kelxml::files
{

/// Whether Qt's codecs exist. At the end of the process they are destroyed before globals that were created
/// before them; no file is opened after that.
bool hasCodecs();

/// A path that a caller of the COM interfaces or of the filer passed, and that names the file that it says.
class Path
{
public:
    /// \return nothing for an empty path, for one that Qt would change into another file's path, because it
    /// has a unit that is not a character or a character that the encoding of file names lacks, and once the
    /// codecs are destroyed
    static std::optional<Path> from(const wchar_t* path);
    /// As above, of a `VT_BSTR`. \return nothing for any other type
    static std::optional<Path> from(const VARIANT& path);

    const QString& name() const { return m_name; }

private:
    explicit Path(QString name) : m_name(std::move(name)) {}

    QString m_name;
};

/// Whether a path in the system's own bytes may be opened.
bool isUsable(const std::string& path);
/// Why a path that is not usable is refused.
constexpr const char* kNotUsable = "the path has a zero in it, or the process is ending";

} // namespace kelxml::files
