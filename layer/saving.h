// Files that are written by the layer.

#pragma once

#include "KelXmlLib/kel/errors.h"
#include "files/file_replacement.h"

#include <QtCore/QByteArray>

#include <string>
#include <system_error>

namespace kel::detail
{

/// Does something with a file. \throw SaveError in the place of what the system reports
template <class Action>
auto withSaveError(const std::string& path, Action action)
{
    try {
        return action();
    } catch (const std::system_error& error) {
        throw SaveError(path, error.code().message());
    }
}

/// A file that is replaced once the new one is complete.
class SavedFile
{
public:
    /// \throw SaveError
    explicit SavedFile(const std::string& path);

    /// \throw SaveError
    void write(const QByteArray& bytes);
    /// \throw SaveError
    void commit();

private:
    std::string m_path;
    kelxml::files::FileReplacement m_file;
};

} // namespace kel::detail
