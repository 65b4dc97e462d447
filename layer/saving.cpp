// Writes a new file, which `commit` puts in the place of the old file. If writing fails, reports the system's
// reason.

#include "layer/saving.h"

#include "files/file.h"

#include <cerrno>

namespace kel::detail
{

namespace
{

kelxml::files::FileReplacement openReplacement(const std::string& path)
{
    if (const char* const refusal = kelxml::files::refusalOf(path))
        throw SaveError(path, refusal);
    if (path.empty())
        throw std::system_error(ENOENT, std::generic_category());
    kelxml::files::ensureMemoryForQt();
    return kelxml::files::FileReplacement(path);
}

} // namespace

SavedFile::SavedFile(const std::string& path)
    : m_path(path), m_file(withSaveError(path, [&] { return openReplacement(path); }))
{}

void SavedFile::write(const QByteArray& bytes)
{
    withSaveError(m_path, [&] { m_file.write(bytes.constData(), static_cast<std::size_t>(bytes.size())); });
}

void SavedFile::commit()
{
    withSaveError(m_path, [&] { m_file.commit(); });
}

} // namespace kel::detail
