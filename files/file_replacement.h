// Replaces a file by a new one that is complete, or leaves it as it is.

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

/// Writes a new file and puts it in the place of an old one when it is complete. Without `commit`, the old
/// file stays as it is, or absent.
///
/// - The new file is made in the directory of the old one: without a name where the file system can do that,
///   so that nothing is left behind even if the process is killed.
/// - Symbolic links are followed as the kernel follows them and stay links. A dangling link creates the file
///   that it leads to.
/// - A file that may not be written is not replaced either.
/// - Permissions, owner, group and access control list stay. Where the system does not allow that, nobody may
///   read the new file who could not read the old one: a lost owner takes the set-uid bit along, a lost group
///   leaves its members no more than everybody has, a lost list leaves only the owner's permissions.
/// - Of a file with several names (hard links), only the one given leads to the new file.
/// - Where the directory takes no new file (EACCES, EPERM), an existing file is written in place, once all is
///   there and, where the file system can reserve it, has space. Only then can a failure cost the old
///   content.
/// - Devices, pipes and sockets are written directly, piece by piece; so are /dev/stdout, /dev/stderr and
///   /dev/fd/N, whatever they lead to, at the place where the descriptor is.
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

    /// Puts the new file, written through to the disk, in the place of the old one. Call it once, last.
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
    Descriptor m_directory;    ///< of the file that is replaced
    std::string m_name;        ///< in there
    Descriptor m_new;
    std::string m_temporaryName;    ///< of the new file; empty while it has none
    std::string m_pending;          ///< what is to be written in place
    bool m_isEmptyFileOurs = false; ///< made at the end of a dangling link
};

} // namespace kelxml::files
