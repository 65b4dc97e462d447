// The filer against Qt's writer used directly: the same calls give the same bytes, every status is the one
// that the arguments call for, and nobody complains on the console.

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
    static MemoryFile file;
    Choices choices(data, size);
    const Choose choose = [&choices](std::size_t limit) { return choices.below(limit); };
    const bool opens = !choices.oneIn(16);
    file.write(opens ? QByteArray("what an earlier filer wrote") : QByteArray());
    Writers writers(opens ? file.path().c_str() : L"/proc/self/none/x", opens, choices.oneIn(2));
    while (choices.left() > 0) {
        const unsigned which = choices.below(std::size(kCalls) + 2);
        if (which < std::size(kCalls)) {
            require(writers.make(kCalls[which], choose));
        } else if (which == std::size(kCalls)) {
            require(writers.flush() && file.size() == writers.expected().size());
        } else {
            require(writers.close());
        }
    }
    writers.end();
    require(file.read() == writers.expected());
    return 0;
}
