// Replaces files without losing the old content after a failed write.

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

/// Writes a new file. `commit` then replaces the old file with it. Without `commit`, the old file stays
/// unchanged.
///
/// - The new file is created in the directory of the old file. If the file system supports it, the new file
///   has no name until `commit`, so nothing of it remains if the process is killed before then.
/// - Symbolic links are followed as the kernel follows them. The link stays, and its target is replaced. If
///   the target does not exist, it is created.
/// - A file that the process has no permission to write is not replaced.
/// - Permissions, owner, group and access control list are preserved. If the system does not allow this,
///   nobody gets more rights than before. If the owner changes, the set-uid bit is cleared. If the group
///   changes, a permission remains only if the group and others both had it. If the access control list
///   cannot be copied, only the owner's permissions remain.
/// - If a file has several names (hard links), only the given name refers to the new file. The other names
///   still refer to the old file.
/// - If the process has no permission to create files in the directory (EACCES, EPERM), `commit` overwrites
///   the old file, if there is one. If the file system supports it, `commit` first reserves space for the new
///   content. Only a failure while overwriting can lose the old content.
/// - Devices, pipes and sockets are written directly, piece by piece. The same applies to /dev/stdout,
///   /dev/stderr and /dev/fd/N, even if the descriptor refers to a regular file. Writing then starts at the
///   descriptor's position.
///
/// If a function fails, it throws `std::system_error`, whose `code().value()` is the `errno`.
class FileReplacement
{
public:
    /// \param path in the file system's encoding. Borrowed for the call.
    explicit FileReplacement(const std::string& path);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    /// Deletes the new file, unless it was committed.
    ~FileReplacement();

    void write(const char* bytes, std::size_t count);

    /// Flushes the new file to the disk and replaces the old file. Call it once, after the last `write`.
    void commit();

private:
    enum class Method {
        byRename, ///< write a new file, then rename it
        inPlace,  ///< collect all bytes, then overwrite the old file
        directly, ///< pass each piece to the device
    };

    FileReplacement() = default;
    void openOld(const std::string& path);
    bool openDirectory(const std::string& path);
    void makeFile();
    void commitByRename();
    void commitInPlace();

    Method m_method = Method::byRename;
    Descriptor m_old;          ///< not open if there was no file
    struct stat m_status = {}; ///< of the old file
    Descriptor m_directory;    ///< the directory of the replaced file
    std::string m_name;        ///< of the replaced file, relative to `m_directory`
    Descriptor m_new;
    std::string m_temporaryName;         ///< of the new file; empty if the file has no name
    std::string m_pending;               ///< collected for `inPlace`
    bool m_hasCreatedLinkTarget = false; ///< the path is a symbolic link to a file that did not exist
};

} // namespace kelxml::files
