// What the fuzz targets share: a condition that ends the run, decisions out of the fuzzer's bytes, and a file
// that is only in memory.

#pragma once

#include "KelComWrapper/typeinfo.h"

#include <QtCore/QByteArray>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace kelfuzz
{

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// Takes decisions from bytes, a single one for most. When they are used up, the last of what is possible is
/// chosen.
class Choices
{
public:
    Choices(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}

    std::size_t left() const { return m_left; }

    /// A number below `limit`, which is at most 65536.
    unsigned below(std::size_t limit)
    {
        if (m_left < 2)
            m_left = limit > 256 ? 0 : m_left;
        if (m_left == 0)
            return static_cast<unsigned>(limit) - 1;
        unsigned number = byte();
        if (limit > 256)
            number = number << 8 | byte();
        return number % static_cast<unsigned>(limit);
    }
    bool oneIn(std::size_t limit) { return below(limit) == 0; }
    template <class Values>
    auto& of(Values& values)
    {
        return *(std::begin(values) + below(std::size(values)));
    }

private:
    std::uint8_t byte()
    {
        --m_left;
        return *m_data++;
    }

    const std::uint8_t* m_data;
    std::size_t m_left;
};

/// A file that is only in memory, with a path.
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(memfd_create("fuzz", 0)) { require(m_descriptor >= 0); }
    ~MemoryFile() { close(m_descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(m_descriptor); }
    int size() const { return static_cast<int>(lseek(m_descriptor, 0, SEEK_END)); }

    void write(const QByteArray& bytes)
    {
        require(ftruncate(m_descriptor, 0) == 0);
        require(pwrite(m_descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()), 0) ==
                bytes.size());
    }

    QByteArray read() const
    {
        QByteArray bytes(size(), '\0');
        require(pread(m_descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()), 0) == bytes.size());
        return bytes;
    }

private:
    int m_descriptor;
};

/// How many arguments a function takes; its result is none.
inline unsigned argumentsOf(const FUNCDESC& function)
{
    const ELEMDESC* const elements = function.lprgelemdescParam;
    return static_cast<unsigned>(
        std::count_if(elements, elements + function.cParams, [](const ELEMDESC& element) {
            return (element.paramdesc.wParamFlags & PARAMFLAG_FIN) != 0;
        }));
}

} // namespace kelfuzz
