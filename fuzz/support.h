// Shared by the fuzz targets: choices from the fuzzer's bytes, a temporary file, and the number of arguments
// that a function takes.

#pragma once

#include "KelComWrapper/typeinfo.h"
#include "support/require.h"

#include <QtCore/QTemporaryDir>
#include <fuzzer/FuzzedDataProvider.h>

namespace kelfuzz
{

/// Makes choices from the fuzzer's bytes. When no bytes are left, each choice is the last of its options.
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

/// The path of a temporary file that only this process uses.
inline QString filePath()
{
    static const QTemporaryDir directory;
    return directory.filePath(QStringLiteral("file"));
}

/// The number of arguments that a function takes. The parameter for the result does not count.
inline UINT argumentsOf(const FUNCDESC& function)
{
    const auto count = static_cast<UINT>(function.cParams);
    const ELEMDESC* const end = function.lprgelemdescParam + count;
    return count > 0 && (end[-1].paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0 ? count - 1 : count;
}

} // namespace kelfuzz
