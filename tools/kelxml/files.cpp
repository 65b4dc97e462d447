// The library loads a file by its path. A path such as /dev/stdin does not work if the standard input is a
// socket. So the standard input is first copied to a file in memory, and the library loads the copy.

#include "files.h"

#include "commands.h"
#include "terminal.h"
#include "text.h"

#include <array>
#include <cerrno>
#include <iostream>
#include <memory>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>

namespace tool
{
namespace
{

constexpr char kStandard[] = "-";
constexpr char kStandardInput[] = "the standard input";
/// The tool stops reading the standard input after this many bytes. The limit is one byte above the limit of
/// the library, so that the library refuses a document that is too long, instead of loading only its
/// beginning.
constexpr std::size_t kMaxInputSize = (std::size_t{512} << 20U) + 1;

void require(bool isDone)
{
    if (!isDone)
        throw Failure(kStandardInput + (": " + std::generic_category().message(errno)));
}

/// An anonymous file in memory.
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(memfd_create("document", MFD_CLOEXEC)) { require(m_descriptor >= 0); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_descriptor); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

    void write(const char* bytes, std::size_t count)
    {
        while (count > 0) {
            const ssize_t written = ::write(m_descriptor, bytes, count);
            require(written > 0 || errno == EINTR);
            if (written > 0) {
                bytes += written;
                count -= static_cast<std::size_t>(written);
            }
        }
    }

private:
    int m_descriptor;
};

void copyStandardInput(MemoryFile& copy)
{
    std::array<char, 1 << 16> buffer;
    for (std::size_t copied = 0; copied < kMaxInputSize;) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        require(count >= 0 || errno == EINTR);
        if (count == 0)
            return;
        if (count > 0) {
            copy.write(buffer.data(), static_cast<std::size_t>(count));
            copied += static_cast<std::size_t>(count);
        }
    }
}

kel::Document loadStandardInput()
{
    MemoryFile copy;
    std::unique_ptr<Progress> progress;
    if (!isatty(STDIN_FILENO)) // the progress would overwrite what the user is typing
        progress = std::make_unique<Progress>("reading");
    copyStandardInput(copy);
    try {
        return kel::Document::load(copy.path());
    } catch (const kel::LoadError& error) {
        throw kel::LoadError(error.kind(), kStandardInput, error.reason(), error.line(), error.column());
    }
}

} // namespace

kel::Document load(const std::string& path)
{
    if (path == kStandard)
        return loadStandardInput();
    const Progress progress("reading " + printable(path));
    return kel::Document::load(path);
}

void save(const kel::Document& document, const std::string& path)
{
    const Progress progress("writing " + printable(path));
    document.save(outputPath(path));
}

std::string outputPath(const std::string& path)
{
    return path == kStandard ? "/dev/stdout" : path;
}

void printError(const std::exception& error)
{
    std::cout.flush();
    std::cerr << painted(Style::error, "kelxml:") << ' ' << printable(error.what()) << '\n';
}

std::ostream& reportStream(const std::string& path)
{
    return path == kStandard ? std::cerr : std::cout;
}

} // namespace tool
