// Every method that is not carried out answers S_OK and leaves its outputs as they were. Swept through the
// slots of a table made by hand, so that a method which began to write or fail shows.

#include "support/dom_fixture.h"
#include "support/own_host.h"

#include <set>

using NoOps = DomTest;

TEST_F(NoOps, AnswerOkAndWriteNothing)
{
    const auto made = oneOfEach(L"<a x='1'>t</a>");
    const struct
    {
        IUnknown* object;
        int last;
        std::set<int> working; ///< the slots, from 7 on, of what is carried out
    } classes[] = {
        {made.document.get(), 75, {7, 8, 10, 11, 12, 13, 17, 20, 21, 22, 23, 27, 36, 45, 56, 58, 65, 66}},
        {made.text.get(), 42, {7, 8, 10, 11, 12, 13, 17, 20, 21, 22, 23, 26, 27}},
        {made.root.get(), 51, {7, 10, 11, 12, 13, 17, 20, 21, 22, 23, 24, 26, 27, 36, 45}},
        {made.attribute.get(), 45, {7, 10, 11, 12, 13, 17, 20, 21, 22, 23, 26, 27, 44}},
        {made.list.get(), 11, {7, 8, 9}},
        {made.map.get(), 16, {7, 10, 11}},
    };
    for (const auto& [object, last, working] : classes)
        for (int slot = 7; slot <= last; ++slot) {
            if (working.count(slot))
                continue;
            // In every register that an argument may use, and where a VARIANT would lie, is a pointer to
            // this.
            std::array<std::array<unsigned char, 64>, 3> storage;
            std::memset(&storage, 0xA5, sizeof storage);
            const auto expected = storage;
            const own_host::Variant value{8, {}, storage[2].data(), nullptr};
            EXPECT_EQ(S_OK, own_host::call(object, slot, storage[0].data(), storage[1].data(),
                                           storage[2].data(), value))
                << slot;
            EXPECT_EQ(expected, storage) << slot;
        }
    EXPECT_EQ("<a x=\"1\">t</a>\n", saved(made.document));
}
