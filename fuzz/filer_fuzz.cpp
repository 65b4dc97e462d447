// Compares the filer with Qt's writer used directly: the same calls must write the same bytes, every status
// must match the arguments, and nothing may be logged.

#include "support.h"
#include "support/filer_calls.h"

using namespace filer_calls;
using namespace kelfuzz;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { std::abort(); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    write(filePath(), "what an earlier filer wrote");
    Writers writers(filePath().toStdWString(),
                    [&choices](std::size_t limit) { return choices.below(limit); });
    writers.compare();
    return 0;
}
