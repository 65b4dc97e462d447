// Every method that is not carried out answers S_OK and leaves its outputs as they were. Swept through the
// slots of a table made by hand, so that a method which began to write or fail shows.

#include "support/dom_fixture.h"
#include "support/own_host.h"

#include <array>
#include <set>

namespace
{

struct NoOps : DomTest
{
    /// Calls a slot with pointers to patterned storage in every register an argument may use, and in the
    /// memory where a VARIANT would lie. Nothing may be written.
    static void expectUntouched(IUnknown& object, int slot)
    {
        std::array<std::array<unsigned char, 64>, 3> storage;
        for (auto& area : storage)
            area.fill(0xA5);
        const auto expected = storage;
        own_host::Variant value{8, {}, storage[2].data(), nullptr};
        EXPECT_EQ(S_OK, own_host::call(&object, slot, storage[0].data(), storage[1].data(), storage[2].data(),
                                       value))
            << "slot " << slot;
        EXPECT_EQ(expected, storage) << "slot " << slot;
    }

    /// \param working the slots, from 7 on, of what is carried out
    static void sweep(IUnknown& object, int last, const std::set<int>& working)
    {
        for (int slot = 7; slot <= last; ++slot)
            if (!working.count(slot))
                expectUntouched(object, slot);
    }
};

TEST_F(NoOps, AnswerOkAndWriteNothing)
{
    const auto [document, root, text, attribute, list, map] = oneOfEach(L"<a x='1'>t</a>");
    sweep(*document, 75, {7, 8, 10, 11, 12, 13, 17, 20, 21, 22, 23, 27, 36, 45, 56, 58, 65, 66});
    sweep(*text, 42, {7, 8, 10, 11, 12, 13, 17, 20, 21, 22, 23, 26, 27});
    sweep(*root, 51, {7, 10, 11, 12, 13, 17, 20, 21, 22, 23, 24, 26, 27, 36, 45});
    sweep(*attribute, 45, {7, 10, 11, 12, 13, 17, 20, 21, 22, 23, 26, 27, 44});
    sweep(*list, 11, {7, 8, 9});
    sweep(*map, 16, {7, 10, 11});
    EXPECT_EQ("<a x=\"1\">t</a>\n", saved(document));
}

} // namespace
