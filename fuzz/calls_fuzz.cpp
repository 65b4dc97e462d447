// Makes random calls on three documents and their objects, and compares each result with a model. The
// fuzzer's bytes choose the calls, their objects and the order of releases.

#include "support.h"
#include "support/call_machine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    model::CallMachine machine([&choices](std::size_t limit) { return choices.below(limit); });
    // Keeps the rest of the bytes to choose the order of the last releases.
    while (choices.remaining_bytes() > size / 8)
        machine.step();
    return 0;
}
