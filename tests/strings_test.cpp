// The library's string conversions return what Qt's conversions return, for random texts that contain hard
// cases.

#include "KelComWrapper/variant_owner.h"
#include "support/allocations.h"
#include "text/strings.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace
{

/// Markup, the code points on both sides of each change in UTF-8 length, surrogates, the byte order mark in
/// both byte orders, and units that are not code points. The first `kUnitsOf16Bits` units fit in 16 bits.
const char32_t kUnits[] = {U'a',   U'<',    U'&',    0x7F,     0x80,     0xE9,       0x7FF,      0x800,
                           0xD7FF, 0xD800,  0xDBFF,  0xDC00,   0xDFFF,   0xE000,     0xFEFF,     0xFFFE,
                           0xFFFF, 0x10000, 0x1F600, 0x10FFFF, 0x110000, 0x7FFFFFFF, 0xFFFE0000, 0xFFFFFFFF};

constexpr std::size_t kUnitsOf16Bits = 17;

TEST(Text, ConversionsEqualQtsForAnyUnitsAndFreeNoEarlierOutput)
{
    EXPECT_TRUE(kelxml::text::fromWide(nullptr).isNull());
    const kel::Variant earlier(L"earlier"); // each round overwrites a copy, and must not free the BSTR
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        // Only short texts contain zeros, because a zero ends the text and long texts must stay long.
        const bool isLong = round % 100 == 0;
        const std::size_t kinds = random() % 2 ? kUnitsOf16Bits : std::size(kUnits);
        std::wstring given(isLong ? 1000 + random() % 50 : random() % 40, L'\0');
        for (wchar_t& unit : given)
            unit = static_cast<wchar_t>(kUnits[random() % kinds]);
        QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(given.c_str()), -1);
        ASSERT_EQ(text, kelxml::text::fromWide(given.c_str())) << "round " << round;
        ASSERT_EQ(text.isNull(), kelxml::text::fromWide(given.c_str()).isNull()) << "round " << round;

        if (!isLong && !text.isEmpty() && random() % 2 == 0)
            text[static_cast<int>(random() % 40) % text.size()] = QChar(static_cast<ushort>(random() % 3));
        std::wstring expected(static_cast<std::size_t>(text.size()), L'\0');
        const int codePoints = text.toWCharArray(expected.data());
        VARIANT value = earlier.get();
        value.wReserved2 = 77;
        const std::size_t failing = codePoints < 1024 ? 2 : 0;
        ASSERT_FALSE(allocations::failsIn(failing, [&] { kelxml::text::putString(text, &value); }))
            << "a short text must need only one allocation, for the BSTR";
        const kel::Variant out = kel::Variant::adopt(value);
        ASSERT_TRUE(value.bstrVal && value.wReserved2 == 77);
        ASSERT_EQ(std::wstring_view(expected.c_str()), out.text()) << "round " << round;
    }
}

} // namespace
