// Files as the system sees them: descriptors that close themselves, and files in memory. They throw
// `std::system_error`.

#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace host
{

/// Owns a descriptor.
class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor();

    int number() const noexcept { return m_number; }
    /// A path by which the file is opened anew, whatever its name and wherever it is.
    std::wstring place() const;

private:
    int m_number = -1;
};

/// A file in memory, without a name.
Descriptor makeFileInMemory();

/// Copies what is left to read from one descriptor to another, up to `limit` bytes. \return the bytes copied
std::uintmax_t copyBytes(int from, int to, std::uintmax_t limit = UINTMAX_MAX);

/// Puts the contents of `from` into the file at `path`, by way of a new file beside it that takes its place,
/// so that it holds either what it held or all that it should. Links are followed, also to where nothing is
/// yet. Devices and pipes, files with several names, and files in directories that take no new ones are
/// written as they are.
void putIntoPlace(int from, const std::string& path);

} // namespace host
