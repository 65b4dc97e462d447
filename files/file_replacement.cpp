// QSaveFile does much of this, but ignores a failed fsync, follows links that the kernel would not follow,
// and gives the new file the old one's permissions under another group.

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
constexpr mode_t kModeOfNewFile = 0666; // minus the process's mask
constexpr int kAttempts = 100;

[[noreturn]] void fail(int reason)
{
    throw std::system_error(reason, std::generic_category());
}

void require(bool isDone)
{
    if (!isDone)
        fail(errno);
}

void writeAll(int descriptor, const char* bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t written = ::write(descriptor, bytes, count);
        require(written >= 0 || errno == EINTR);
        bytes += std::max<ssize_t>(0, written);
        count -= static_cast<std::size_t>(std::max<ssize_t>(0, written));
    }
}

void synchronize(const Descriptor& file)
{
    require(fsync(file.number()) == 0 || errno == EINVAL); // the file system does not support it
}

bool isLink(const std::string& path)
{
    struct stat status = {};
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// The path by which a file without a name can get one.
std::string placeOf(const Descriptor& file)
{
    return "/proc/self/fd/" + std::to_string(file.number());
}

/// The process's descriptor that a path names, else -1.
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

/// Calls `make` with random names until one is free. \return the name, empty if it failed, `errno` set
template <class Make>
std::string makeName(Make make)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::string name = randomName();
        if (make(name.c_str()))
            return name;
        if (errno != EEXIST)
            break;
    }
    return {};
}

/// In the kernel's form; empty if there is none.
std::vector<char> accessListOf(const Descriptor& file)
{
    const ssize_t size = fgetxattr(file.number(), kAccessList, nullptr, 0);
    std::vector<char> list(static_cast<std::size_t>(std::max<ssize_t>(0, size)));
    if (!list.empty())
        require(fgetxattr(file.number(), kAccessList, list.data(), list.size()) == size);
    return list;
}

/// What a new file keeps of the old one.
struct Kept
{
    bool owner;
    bool group;
    bool list;
};

/// Those who lose their place as owner, group or list entry are judged as group or others from now on, and
/// must not gain by that. Nor must the new group's members, who were others before.
mode_t modeThatGivesNothing(mode_t old, Kept kept)
{
    const mode_t owner = old >> 6U & 7U;
    mode_t group = old >> 3U & 7U;
    mode_t others = old & 7U;
    if (!kept.group)
        group = others = group & others;
    if (!kept.owner)
        group &= owner, others &= owner;
    if (!kept.list)
        group = others = 0;
    mode_t special = old & (S_ISUID | S_ISGID | S_ISVTX);
    if (!kept.owner)
        special &= ~static_cast<mode_t>(S_ISUID);
    if (!kept.group)
        special &= ~static_cast<mode_t>(S_ISGID);
    return special | owner << 6U | group << 3U | others;
}

void takeOver(const Descriptor& old, const struct stat& status, const Descriptor& made)
{
    if (fchown(made.number(), status.st_uid, status.st_gid) != 0)
        static_cast<void>(fchown(made.number(), static_cast<uid_t>(-1), status.st_gid) == 0);
    struct stat now = {};
    require(fstat(made.number(), &now) == 0);
    Kept kept{now.st_uid == status.st_uid, now.st_gid == status.st_gid, true};
    // The directory may have given the new file a list of its own.
    require(fremovexattr(made.number(), kAccessList) == 0 || errno == ENODATA || errno == EOPNOTSUPP);
    const std::vector<char> list = accessListOf(old);
    if (!list.empty())
        kept.list = kept.group && fsetxattr(made.number(), kAccessList, list.data(), list.size(), 0) == 0;
    require(fchmod(made.number(), modeThatGivesNothing(status.st_mode, kept)) == 0);
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
        m_way = Way::directly;
        m_old = Descriptor(fcntl(number, F_DUPFD_CLOEXEC, 0));
        require(m_old.isOpen());
        return;
    }
    openOld(path);
    // Another process may replace the file between the steps.
    for (int attempt = 1; m_way == Way::byRename && !findPlace(path); ++attempt) {
        if (attempt == kAttempts)
            fail(EBUSY);
        openOld(path);
    }
    if (m_way == Way::byRename)
        makeFile();
}

FileReplacement::~FileReplacement()
{
    if (!m_temporaryName.empty())
        unlinkat(m_directory.number(), m_temporaryName.c_str(), 0);
    if (m_isEmptyFileOurs && fstat(m_old.number(), &m_status) == 0 && m_status.st_size == 0)
        unlinkat(m_directory.number(), m_name.c_str(), 0);
}

void FileReplacement::write(const char* bytes, std::size_t count)
{
    if (m_way == Way::inPlace)
        m_pending.append(bytes, count);
    else
        writeAll(m_way == Way::directly ? m_old.number() : m_new.number(), bytes, count);
}

void FileReplacement::commit()
{
    if (m_way == Way::byRename)
        commitByRename();
    else if (m_way == Way::inPlace)
        commitInPlace();
}

void FileReplacement::openOld(const std::string& path)
{
    m_old = Descriptor(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!m_old.isOpen()) {
        require(errno == ENOENT);
        if (!isLink(path))
            return;
        // The kernel decides whether a dangling link is followed: not if a stranger made it in a sticky
        // directory.
        m_old = Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, kModeOfNewFile));
        require(m_old.isOpen());
        m_isEmptyFileOurs = true;
    }
    require(fstat(m_old.number(), &m_status) == 0);
    if (!S_ISREG(m_status.st_mode))
        m_way = Way::directly;
}

/// \return false if what is there now is not the file that the kernel opened
bool FileReplacement::findPlace(const std::string& path)
{
    const std::string file = m_old.isOpen() && isLink(path) ? withoutLinks(path) : path;
    const std::size_t slash = file.rfind('/');
    m_name = file.substr(slash + 1);
    const std::string directory = slash == std::string::npos ? "." : file.substr(0, slash + 1);
    m_directory = Descriptor(open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    require(m_directory.isOpen());
    if (!m_old.isOpen())
        return true;
    struct stat found = {};
    return fstatat(m_directory.number(), m_name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 &&
           found.st_dev == m_status.st_dev && found.st_ino == m_status.st_ino;
}

void FileReplacement::makeFile()
{
    // What is to take over permissions is private until it has them.
    const mode_t mode = m_old.isOpen() ? 0600 : kModeOfNewFile;
    m_new = Descriptor(openat(m_directory.number(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    if (m_new.isOpen() && access(placeOf(m_new).c_str(), F_OK) == 0)
        return;
    m_temporaryName = makeName([this, mode](const char* name) {
        constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        m_new = Descriptor(openat(m_directory.number(), name, kFlags, mode));
        return m_new.isOpen();
    });
    if (!m_temporaryName.empty())
        return;
    require(m_old.isOpen() && (errno == EACCES || errno == EPERM));
    m_way = Way::inPlace;
}

void FileReplacement::commitByRename()
{
    if (m_old.isOpen())
        takeOver(m_old, m_status, m_new);
    synchronize(m_new);
    if (m_temporaryName.empty())
        m_temporaryName = makeName([this](const char* name) {
            return linkat(AT_FDCWD, placeOf(m_new).c_str(), m_directory.number(), name, AT_SYMLINK_FOLLOW) ==
                   0;
        });
    require(!m_temporaryName.empty());
    require(renameat(m_directory.number(), m_temporaryName.c_str(), m_directory.number(), m_name.c_str()) ==
            0);
    m_temporaryName.clear();
    m_isEmptyFileOurs = false;
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
    require(ftruncate(m_old.number(), size) == 0);
    synchronize(m_old);
}

} // namespace kelxml::files
