// Checks paths before Qt or the system opens them.

#include "files/path.h"

#include "qt/codecs.h"
#include "text/strings.h"

#include <QtCore/QFile>

namespace kelxml::files
{

std::optional<Path> Path::from(const wchar_t* path)
{
    // `fromWide` would drop a byte order mark at the start of the path.
    if (!path || *path == L'\0' || *path == QChar::ByteOrderMark || !qt::hasCodecs())
        return std::nullopt;
    const QString name = text::fromWide(path);
    if (name != text::charactersFromWide(path) || name != QFile::decodeName(QFile::encodeName(name)))
        return std::nullopt;
    return Path(name);
}

std::optional<Path> Path::from(const VARIANT& path)
{
    return path.vt == VT_BSTR ? from(path.bstrVal) : std::nullopt;
}

const char* refusalOf(const std::string& path)
{
    if (path.find('\0') != std::string::npos)
        return "the path contains a null character";
    return qt::hasCodecs() ? nullptr : "the process is exiting";
}

} // namespace kelxml::files
