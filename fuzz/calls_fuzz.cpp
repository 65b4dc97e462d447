// Runs the call machine, a random-call test: makes random calls on three documents and their objects, and
// compares each result with a model. The fuzzer's bytes choose the calls, the objects of the calls and the
// order of releases.

#include "support.h"
#include "support/call_machine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    model::CallMachine machine([&choices](std::size_t limit) { return choices.below(limit); });
    // The last eighth of the bytes chooses the order in which the machine's destructor releases objects.
    while (choices.remaining_bytes() > size / 8)
        machine.step();
    return 0;
}
