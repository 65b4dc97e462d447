// Copying between descriptors, and the exchange of a file.

#include "descriptor.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace host
{
namespace
{

[[noreturn]] void fail()
{
    throw std::system_error(errno, std::generic_category());
}

void require(bool isDone)
{
    if (!isDone)
        fail();
}

void writeInPlace(int from, const std::string& path)
{
    const Descriptor to(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, 0666));
    require(to.number() >= 0);
    copyBytes(from, to.number());
    require(fsync(to.number()) == 0 || errno == EINVAL || errno == EROFS); // pipes and devices have no disk
}

/// Removes a new file again, unless it found its place.
class NewFile
{
public:
    explicit NewFile(std::string path) : m_path(std::move(path))
    {
        m_descriptor = Descriptor(mkostemp(m_path.data(), O_CLOEXEC));
    }
    ~NewFile()
    {
        if (m_descriptor.number() >= 0 && !m_isInPlace)
            unlink(m_path.c_str());
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int descriptor() const { return m_descriptor.number(); }
    void moveTo(const std::string& path)
    {
        require(fsync(descriptor()) == 0);
        require(rename(m_path.c_str(), path.c_str()) == 0);
        m_isInPlace = true;
    }

private:
    std::string m_path;
    Descriptor m_descriptor;
    bool m_isInPlace = false;
};

/// Where a link leads, also when nothing is there yet.
fs::path followed(fs::path path)
{
    constexpr int kMostLinks = 40; // as many as the system follows
    for (int links = 0; fs::is_symlink(path); ++links) {
        if (links == kMostLinks)
            throw std::system_error(ELOOP, std::generic_category());
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

/// What a file has beside its contents; a new one gets what the system gives.
void takeOver(const struct stat* old, int descriptor)
{
    if (old && fchown(descriptor, old->st_uid, old->st_gid) != 0)
        require(errno == EPERM); // then it is ours, as a copy would be
    const mode_t mask = umask(0);
    umask(mask);
    require(fchmod(descriptor, old ? old->st_mode & 07777U : 0666U & ~mask) == 0);
}

} // namespace

Descriptor::~Descriptor()
{
    if (m_number >= 0)
        close(m_number);
}

std::wstring Descriptor::place() const
{
    return L"/proc/self/fd/" + std::to_wstring(m_number);
}

Descriptor makeFileInMemory()
{
    Descriptor made(memfd_create("document", MFD_CLOEXEC));
    require(made.number() >= 0);
    return made;
}

std::uintmax_t copyBytes(int from, int to, std::uintmax_t limit)
{
    std::array<char, 1 << 16> buffer;
    std::uintmax_t copied = 0;
    while (copied < limit) {
        const ssize_t got = read(from, buffer.data(), buffer.size());
        if (got == 0)
            break;
        if (got < 0) {
            require(errno == EINTR);
            continue;
        }
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = write(to, buffer.data() + done, static_cast<std::size_t>(got - done));
            require(put >= 0 || errno == EINTR);
            done += put > 0 ? put : 0;
        }
        copied += static_cast<std::uintmax_t>(got);
    }
    return copied;
}

void putIntoPlace(int from, const std::string& path)
{
    struct stat old = {};
    const bool isThere = stat(path.c_str(), &old) == 0;
    if (isThere && (!S_ISREG(old.st_mode) || old.st_nlink != 1))
        return writeInPlace(from, path);
    // A link stays one: what it leads to is exchanged.
    const fs::path target = followed(path);
    NewFile made((target.parent_path() / ".kelxml-XXXXXX").string());
    if (made.descriptor() < 0) {
        if (isThere)
            return writeInPlace(from, path);
        fail();
    }
    copyBytes(from, made.descriptor());
    takeOver(isThere ? &old : nullptr, made.descriptor());
    made.moveTo(target.string());
}

} // namespace host
