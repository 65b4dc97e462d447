// The filer against Qt's writer used directly: the same calls give the same bytes, every status is the one
// that the arguments call for, nobody complains on the console, and another parser reads back what makes an
// element.

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
    file.write("what an earlier filer wrote");
    Writers writers(file.path().c_str(), choices.oneIn(2));
    const bool isElement = choices.oneIn(2);
    if (isElement)
        writers.makeElement(choose);
    while (!isElement && choices.left() > 0) {
        if (choices.oneIn(20)) {
            writers.flush();
            require(file.size() == writers.expected().size());
        }
        writers.makeAny(choose);
    }
    writers.close();
    require(writers.isRight() && file.read() == writers.expected());
    require(!isElement || writers.isReadBack());
    return 0;
}
