// Makes the same calls on the filer and on Qt's writer. Both must write the same bytes. The status that the
// filer returns must fit the arguments, and Qt must log nothing.

#include "support.h"
#include "support/filer_calls.h"

#include <cstdio>

using namespace filer_calls;
using namespace kelfuzz;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
        std::fputs(qPrintable(text), stderr);
        std::abort();
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    write(filePath(), "the file of an earlier filer");
    Writers writers(filePath().toStdWString(),
                    [&choices](std::size_t limit) { return choices.below(limit); });
    writers.compare();
    return 0;
}
