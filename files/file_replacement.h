// Replaces files so that a failed write does not lose the old content.

#pragma once

#include <string>

#include <sys/stat.h>

namespace kelxml::files
{

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    int number() const noexcept { return m_number; }
    bool isOpen() const noexcept { return m_number >= 0; }

private:
    int m_number;
};

/// Replaces the file that a path names, here called the old file. If there is no old file, creates a file.
/// `write` writes to a new file, and `commit` puts the new file in the place of the old file. Without
/// `commit`, the old file stays unchanged.
///
/// - The new file is created in the directory of the old file. If the file system supports files without a
///   name, the new file has no name until `commit`. If the process is killed while the new file has no name,
///   nothing of the new file remains.
/// - A symbolic link stays, and the file that the link points to is replaced or created. If the kernel
///   refuses to follow a link, the constructor fails.
/// - If the process has no permission to write the old file, the constructor fails.
/// - Permissions, owner, group and access control list are preserved as far as the system allows. Nobody gets
///   more rights than before, with one exception: if the owner cannot be preserved, the user that the process
///   runs as becomes the owner. In this case, the set-uid bit is cleared, and the group and others lose every
///   permission that the old owner did not have. If the group changes, the set-gid bit is cleared, and the
///   new group and others get only those permissions that the old group had and others had, too. If the old
///   file has an access control list, and the group changes or the system refuses to copy the list, the group
///   and others lose all permissions.
/// - If a file has several names (hard links), only the given name refers to the new file. The other names
///   still refer to the old file.
/// - If the process has no permission to create files in the directory (EACCES, EPERM), `commit` overwrites
///   the content of the old file; if there is no old file, the constructor fails. If the file system can
///   reserve space, `commit` reserves space for the new content before it overwrites the old content. Only a
///   failure while overwriting can lose the old content.
/// - If the path names a device or a pipe, each `write` passes its bytes on immediately, and `commit` does
///   nothing. The same applies to /dev/stdout, /dev/stderr and /dev/fd/N. If the descriptor that such a path
///   names refers to a regular file, writing starts at the descriptor's current position.
///
/// A function that fails throws `std::system_error`. The `code().value()` of this exception is the `errno`.
class FileReplacement
{
public:
    /// \param path the path of the old file, in the file system's encoding; not needed after the call
    explicit FileReplacement(const std::string& path);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    /// If `commit` was not called, deletes the new file. If the constructor created a file because the path
    /// is a symbolic link to a missing file, also deletes that file, unless `commit` has filled it.
    ~FileReplacement();

    void write(const char* bytes, std::size_t count);

    /// Flushes the new file to the disk and replaces the old file with the new one. Call `commit` once, after
    /// the last `write`.
    void commit();

private:
    enum class Method {
        byRename, ///< write a new file, then rename the new file
        inPlace,  ///< collect all bytes, then overwrite the old file
        directly, ///< pass the bytes of each `write` on immediately
    };

    FileReplacement() = default;
    void openOld(const std::string& path);
    bool openDirectory(const std::string& path);
    void makeFile();
    void commitByRename();
    void commitInPlace();

    Method m_method = Method::byRename;
    Descriptor m_old;          ///< the old file or the device; not open if neither exists
    struct stat m_status = {}; ///< the status of the old file
    Descriptor m_directory;    ///< the directory of the old file
    std::string m_name;        ///< the name of the old file in `m_directory`
    Descriptor m_new;
    std::string m_temporaryName;         ///< the name of the new file; empty if the new file has no name
    std::string m_pending;               ///< the bytes collected so far, if `m_method` is `inPlace`
    bool m_hasCreatedLinkTarget = false; ///< the constructor created the file that a symbolic link names
};

} // namespace kelxml::files
