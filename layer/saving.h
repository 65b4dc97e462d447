// Writes files, and reports failures as `SaveError`.

#pragma once

#include "KelXmlLib/kel/errors.h"
#include "files/file_replacement.h"

#include <QtCore/QByteArray>

#include <string>
#include <system_error>

namespace kel::detail
{

/// Runs an action on a file. \throw SaveError if the action throws a `std::system_error`
template <class Action>
auto withSaveError(const std::string& path, Action action)
{
    try {
        return action();
    } catch (const std::system_error& error) {
        throw SaveError(path, error.code().message());
    }
}

/// A new file that is being written. The new file replaces an existing file only when `commit` is called.
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
