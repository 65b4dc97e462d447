// Replaces a file once the new one is complete. Until then the old file stays in place.

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

/// Writes a new file and replaces the old one when it is complete. Without `commit`, the old file stays.
///
/// - The new file is created in the directory of the old one. If the file system supports it, the file has no
///   name, so that nothing remains even if the process is killed.
/// - Symbolic links are followed as the kernel follows them and stay links. A dangling link creates the file
///   that it leads to.
/// - A file that the process may not write is not replaced.
/// - Permissions, owner, group and access control list are preserved. If the system does not allow that,
///   nobody who could not read the old file can read the new one: without the owner, the set-uid bit is
///   cleared; without the group, its members get the permissions of others; without the list, only the
///   owner's permissions remain.
/// - Of a file with several names (hard links), only the given name is replaced.
/// - If the directory accepts no new file (EACCES, EPERM), an existing file is overwritten, after all bytes
///   are known and, if the file system supports it, space is reserved. Only then can a failure lose the old
///   content.
/// - Devices, pipes and sockets are written directly, piece by piece. So are /dev/stdout, /dev/stderr and
///   /dev/fd/N, at the descriptor's position, whatever they refer to.
///
/// All functions throw `std::system_error` with the system's reason; its `code().value()` is an `errno`.
class FileReplacement
{
public:
    /// \param path in the file system's encoding. Borrowed for the call.
    explicit FileReplacement(const std::string& path);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    /// Discards what was written, unless it was committed.
    ~FileReplacement();

    void write(const char* bytes, std::size_t count);

    /// Flushes the new file to the disk and replaces the old one. Call it once, last.
    void commit();

private:
    enum class Way {
        byRename,
        inPlace,
        directly,
    };

    FileReplacement() = default;
    void openOld(const std::string& path);
    bool findPlace(const std::string& path);
    void makeFile();
    void commitByRename();
    void commitInPlace();

    Way m_way = Way::byRename;
    Descriptor m_old;          ///< not open if there is no file yet
    struct stat m_status = {}; ///< of the old file
    Descriptor m_directory;    ///< the directory of the replaced file
    std::string m_name;        ///< in `m_directory`
    Descriptor m_new;
    std::string m_temporaryName;    ///< of the new file; empty while the file is unnamed
    std::string m_pending;          ///< to be written in place
    bool m_isEmptyFileOurs = false; ///< created for a dangling link
};

} // namespace kelxml::files
