// Shared by the fuzz targets: decisions from the fuzzer's bytes, a file, and a function's argument count.

#pragma once

#include "KelComWrapper/typeinfo.h"
#include "support/require.h"

#include <QtCore/QTemporaryDir>
#include <fuzzer/FuzzedDataProvider.h>

namespace kelfuzz
{

/// Takes decisions from bytes. When they are used up, the last option is chosen.
struct Choices : FuzzedDataProvider
{
    using FuzzedDataProvider::FuzzedDataProvider;

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

/// The path of a file of this process alone.
inline QString filePath()
{
    static const QTemporaryDir directory;
    return directory.filePath(QStringLiteral("file"));
}

/// How many arguments a function takes, not counting its result.
inline UINT argumentsOf(const FUNCDESC& function)
{
    const auto count = static_cast<UINT>(function.cParams);
    const ELEMDESC* const end = function.lprgelemdescParam + count;
    return count > 0 && (end[-1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0 ? count - 1 : count;
}

} // namespace kelfuzz
