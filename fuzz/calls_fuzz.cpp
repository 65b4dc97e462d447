// Random calls over the classes and three documents against a model of them. The fuzzer's bytes choose the
// calls, their objects and the order in which everything is released.

#include "support.h"
#include "support/call_machine.h"

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    // The rest of the bytes is for the machine's end, when it releases what it holds.
    const std::string difference = makeCalls([&choices](unsigned limit) { return choices.below(limit); },
                                             [&choices, size] { return choices.left() > size / 8; });
    std::fputs(difference.c_str(), stderr);
    kelfuzz::require(difference.empty());
    return 0;
}
