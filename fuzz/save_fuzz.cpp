// Builds random trees with Qt's DOM, including trees that no parser could build. Compares the bytes that our
// serializer writes with the bytes that Qt writes.

#include "support.h"
#include "support/random_tree.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    RandomTree tree([&choices](std::size_t limit) { return choices.below(limit); });
    while (choices.remaining_bytes() > 0)
        tree.grow();
    tree.requireSameBytesAsQt();
    return 0;
}
