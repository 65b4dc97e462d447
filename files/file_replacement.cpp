// This code does not use QSaveFile, for three reasons. QSaveFile ignores a failed fsync. QSaveFile follows
// symbolic links that the kernel refuses to follow. QSaveFile copies the permissions of the old file even if
// the new file belongs to another group, so that members of the other group could read the new file.

#include "files/file_replacement.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace kelxml::files
{

namespace
{

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr mode_t kModeOfNewFile = 0666; // the kernel applies the umask
constexpr int kMaxAttempts = 100;

[[noreturn]] void fail(int reason)
{
    throw std::system_error(reason, std::generic_category());
}

void failUnless(bool isDone)
{
    if (!isDone)
        fail(errno);
}

void writeAll(int descriptor, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t written = ::write(descriptor, bytes, count);
        failUnless(written >= 0 || errno == EINTR);
        bytes += std::max<ssize_t>(0, written);
        count -= static_cast<std::size_t>(std::max<ssize_t>(0, written));
    }
}

void synchronize(const Descriptor& file)
{
    failUnless(fsync(file.number()) == 0 || errno == EINVAL); // EINVAL: the file system has no fsync
}

bool isLink(const std::string& path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// Returns a path to an open file. `linkat` needs this path to give an unnamed file its name.
std::string procPathOf(const Descriptor& file)
{
    return "/proc/self/fd/" + std::to_string(file.number());
}

/// Returns the descriptor that `path` names, such as 1 for /dev/stdout or 3 for /dev/fd/3. Returns -1 for any
/// other path.
int descriptorNamed(const std::string& path)
{
    if (path == "/dev/stdout")
        return STDOUT_FILENO;
    if (path == "/dev/stderr")
        return STDERR_FILENO;
    for (const std::string directory : {"/dev/fd/", "/proc/self/fd/"})
        if (path.compare(0, directory.size(), directory) == 0 && path.size() > directory.size() &&
            path.size() < directory.size() + 9 &&
            path.find_first_not_of("0123456789", directory.size()) == std::string::npos)
            return std::stoi(path.substr(directory.size()));
    return -1;
}

/// Returns `path` with all symbolic links resolved; an empty string on failure.
std::string withoutLinks(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : std::string();
}

std::string randomName()
{
    std::random_device random;
    char name[32];
    std::snprintf(name, sizeof name, ".kelxml-%08x%08x", random(), random());
    return name;
}

/// Calls `make` with random names until `make` succeeds. Gives up if `make` fails with an error other than
/// EEXIST, or after `kMaxAttempts` calls. \return the name with which `make` succeeded; an empty string after
/// giving up, and `errno` then contains the reason
template <class Make>
std::string makeName(Make make)
{
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        std::string name = randomName();
        if (make(name.c_str()))
            return name;
        if (errno != EEXIST)
            break;
    }
    return {};
}

/// Returns the access control list of `file` in the kernel's own format; empty if the file has no list.
std::vector<char> accessListOf(const Descriptor& file)
{
    const ssize_t size = fgetxattr(file.number(), kAccessList, nullptr, 0);
    std::vector<char> list(static_cast<std::size_t>(std::max<ssize_t>(0, size)));
    if (!list.empty())
        failUnless(fgetxattr(file.number(), kAccessList, list.data(), list.size()) == size);
    return list;
}

/// Whether the new file has the same owner, the same group, and the same access control list as the old file.
struct Preserved
{
    bool owner;
    bool group;
    bool list;
};

/// Returns the permission bits of the new file. With these bits, nobody gains a permission that the old file
/// did not give them, except a new owner.
///
/// - If the owner changes, the kernel applies the group's bits or the others' bits to the old owner. So these
///   bits keep only permissions that the old owner had.
/// - If the group changes, the kernel applies the others' bits to the members of the old group, and the
///   group's bits to the members of the new group. So these bits keep only permissions that the old file gave
///   both to its group and to others.
/// - If the access control list is lost, the kernel applies the group's bits or the others' bits to the users
///   that the list named. The list may have denied these users everything, so these bits become 0.
mode_t restrictedMode(mode_t old, Preserved preserved)
{
    const mode_t owner = old >> 6U & 7U;
    mode_t group = old >> 3U & 7U;
    mode_t others = old & 7U;
    if (!preserved.group)
        group = others = group & others;
    if (!preserved.owner)
        group &= owner, others &= owner;
    if (!preserved.list)
        group = others = 0;
    mode_t special = old & (S_ISUID | S_ISGID | S_ISVTX);
    if (!preserved.owner)
        special &= ~static_cast<mode_t>(S_ISUID);
    if (!preserved.group)
        special &= ~static_cast<mode_t>(S_ISGID);
    return special | owner << 6U | group << 3U | others;
}

/// Copies owner, group, access control list and permission bits to the new file, as far as the system allows.
void copyPermissions(const Descriptor& old, const struct stat& status, const Descriptor& replacement)
{
    if (fchown(replacement.number(), status.st_uid, status.st_gid) != 0)
        static_cast<void>(fchown(replacement.number(), static_cast<uid_t>(-1), status.st_gid) == 0);
    struct stat now = {};
    failUnless(fstat(replacement.number(), &now) == 0);
    Preserved preserved{now.st_uid == status.st_uid, now.st_gid == status.st_gid, true};
    // The new file may have inherited an access control list from its directory.
    failUnless(fremovexattr(replacement.number(), kAccessList) == 0 || errno == ENODATA ||
               errno == EOPNOTSUPP);
    const std::vector<char> list = accessListOf(old);
    if (!list.empty())
        preserved.list =
            preserved.group && fsetxattr(replacement.number(), kAccessList, list.data(), list.size(), 0) == 0;
    failUnless(fchmod(replacement.number(), restrictedMode(status.st_mode, preserved)) == 0);
}

} // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    std::swap(m_number, other.m_number);
    return *this;
}

Descriptor::~Descriptor()
{
    if (isOpen())
        close(m_number);
}

FileReplacement::FileReplacement(const std::string& path) : FileReplacement()
{
    if (const int number = descriptorNamed(path); number >= 0) {
        m_method = Method::directly;
        m_old = Descriptor(fcntl(number, F_DUPFD_CLOEXEC, 0));
        failUnless(m_old.isOpen());
        return;
    }
    openOld(path);
    // If another process replaces the old file between `openOld` and `openDirectory`, start again with the
    // file that replaced the old one.
    for (int attempt = 1; m_method == Method::byRename && !openDirectory(path); ++attempt) {
        if (attempt == kMaxAttempts)
            fail(EBUSY);
        openOld(path);
    }
    if (m_method == Method::byRename)
        makeFile();
}

FileReplacement::~FileReplacement()
{
    if (!m_temporaryName.empty())
        unlinkat(m_directory.number(), m_temporaryName.c_str(), 0);
    if (m_hasCreatedLinkTarget && fstat(m_old.number(), &m_status) == 0 && m_status.st_size == 0)
        unlinkat(m_directory.number(), m_name.c_str(), 0);
}

void FileReplacement::write(const char* bytes, std::size_t count)
{
    if (m_method == Method::inPlace)
        m_pending.append(bytes, count);
    else
        writeAll(m_method == Method::directly ? m_old.number() : m_new.number(), bytes, count);
}

void FileReplacement::commit()
{
    if (m_method == Method::byRename)
        commitByRename();
    else if (m_method == Method::inPlace)
        commitInPlace();
}

void FileReplacement::openOld(const std::string& path)
{
    m_old = Descriptor(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!m_old.isOpen()) {
        failUnless(errno == ENOENT);
        if (!isLink(path))
            return;
        // Opening the link creates the file that the link names. The kernel may refuse to do this: in a
        // sticky directory such as /tmp, the kernel does not follow another user's link.
        m_old = Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, kModeOfNewFile));
        failUnless(m_old.isOpen());
        m_hasCreatedLinkTarget = true;
    }
    failUnless(fstat(m_old.number(), &m_status) == 0);
    if (!S_ISREG(m_status.st_mode))
        m_method = Method::directly;
}

/// Opens the directory of the old file and stores the old file's name. \return false if this name no longer
/// refers to the file that `openOld` opened
bool FileReplacement::openDirectory(const std::string& path)
{
    const std::string file = m_old.isOpen() && isLink(path) ? withoutLinks(path) : path;
    const std::size_t slash = file.rfind('/');
    m_name = file.substr(slash + 1);
    const std::string directory = slash == std::string::npos ? "." : file.substr(0, slash + 1);
    m_directory = Descriptor(open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    failUnless(m_directory.isOpen());
    if (!m_old.isOpen())
        return true;
    struct stat found = {};
    return fstatat(m_directory.number(), m_name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 &&
           found.st_dev == m_status.st_dev && found.st_ino == m_status.st_ino;
}

void FileReplacement::makeFile()
{
    // If there is an old file, only the owner can open the new file until `copyPermissions` runs.
    const mode_t mode = m_old.isOpen() ? 0600 : kModeOfNewFile;
    m_new = Descriptor(openat(m_directory.number(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    if (m_new.isOpen() && access(procPathOf(m_new).c_str(), F_OK) == 0)
        return;
    m_temporaryName = makeName([this, mode](const char* name) {
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        m_new = Descriptor(openat(m_directory.number(), name, kFlags, mode));
        return m_new.isOpen();
    });
    if (!m_temporaryName.empty())
        return;
    failUnless(m_old.isOpen() && (errno == EACCES || errno == EPERM));
    m_method = Method::inPlace;
}

void FileReplacement::commitByRename()
{
    if (m_old.isOpen())
        copyPermissions(m_old, m_status, m_new);
    synchronize(m_new);
    if (m_temporaryName.empty())
        m_temporaryName = makeName([this](const char* name) {
            return linkat(AT_FDCWD, procPathOf(m_new).c_str(), m_directory.number(), name,
                          AT_SYMLINK_FOLLOW) == 0;
        });
    failUnless(!m_temporaryName.empty());
    failUnless(
        renameat(m_directory.number(), m_temporaryName.c_str(), m_directory.number(), m_name.c_str()) == 0);
    m_temporaryName.clear();
    m_hasCreatedLinkTarget = false;
}

void FileReplacement::commitInPlace()
{
    const auto size = static_cast<off_t>(m_pending.size());
    if (size > m_status.st_size && fallocate(m_old.number(), 0, 0, size) != 0 && errno != EOPNOTSUPP) {
        const int reason = errno;
        static_cast<void>(ftruncate(m_old.number(), m_status.st_size) == 0);
        fail(reason);
    }
    writeAll(m_old.number(), m_pending.data(), m_pending.size());
    failUnless(ftruncate(m_old.number(), size) == 0);
    synchronize(m_old);
}

} // namespace kelxml::files
