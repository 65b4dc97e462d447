// Compares the bytes of our serializer with Qt's, for trees that only calls can build.

#include "support.h"
#include "support/any_tree.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    kelfuzz::Choices choices(data, size);
    AnyTree tree([&choices](std::size_t limit) { return choices.below(limit); });
    while (choices.remaining_bytes() > 0)
        tree.grow();
    tree.requireQtsBytes();
    return 0;
}
