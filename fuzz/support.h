// What the fuzz targets share: decisions out of the fuzzer's bytes, and a file that is only in
// memory.

#pragma once

#include "KelComWrapper/typeinfo.h"
#include "support/require.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/mman.h>

namespace kelfuzz
{

/// Takes decisions from bytes. When they are used up, the last of what is possible is chosen.
struct Choices : FuzzedDataProvider
{
    using FuzzedDataProvider::FuzzedDataProvider;

    std::size_t left() { return remaining_bytes(); }
    unsigned below(std::size_t limit)
    {
        const auto last = static_cast<unsigned>(limit) - 1;
        return last - ConsumeIntegralInRange(0U, last);
    }
    bool oneIn(std::size_t limit) { return below(limit) == 0; }
    template <class Values>
    auto& of(Values& values)
    {
        return *(std::begin(values) + below(std::size(values)));
    }
};

/// A file that is only in memory, with a path.
struct MemoryFile
{
    MemoryFile()
    {
        require(file.open(memfd_create("fuzz", 0), QIODevice::ReadWrite | QIODevice::Unbuffered,
                          QFileDevice::AutoCloseHandle));
    }
    std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(file.handle()); }
    void write(const QByteArray& bytes)
    {
        require(file.resize(0) && file.seek(0) && file.write(bytes) == bytes.size());
    }
    QByteArray read() const
    {
        require(file.seek(0));
        return file.readAll();
    }
    mutable QFile file;
};

/// How many arguments a function takes; its result is none.
inline UINT argumentsOf(const FUNCDESC& function)
{
    const auto count = static_cast<UINT>(function.cParams);
    const ELEMDESC* const end = function.lprgelemdescParam + count;
    return count > 0 && (end[-1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0 ? count - 1 : count;
}

} // namespace kelfuzz
