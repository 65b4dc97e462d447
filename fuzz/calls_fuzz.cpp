// Random calls over the classes and three documents against a model of them. The fuzzer's bytes choose the
// calls, their objects and the order in which everything is released.

#include "support.h"
#include "support/call_machine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    model::CallMachine machine([&choices](std::size_t limit) { return choices.below(limit); });
    // The rest of the bytes is for the machine's end, when it releases what it holds.
    while (choices.remaining_bytes() > size / 8)
        machine.step();
    return 0;
}
