// BSTRs: what the length prefix, the ending zero and nulls come to.

#include "KelComWrapper/bstr.h"

#include <cwchar>
#include <gtest/gtest.h>

TEST(Bstr, NullsAreTakenAndGivenBack)
{
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    EXPECT_EQ(lstrlenW(nullptr), 0);
    SysFreeString(nullptr);
}

TEST(Bstr, LengthPrefixCountsCharactersAndAZeroEndsThem)
{
    for (const wchar_t* text : {L"", L"a", L"\U0001F600 beyond the first plane"}) {
        const kel::Bstr copy(text);
        EXPECT_STREQ(copy.get(), text);
        EXPECT_EQ(lstrlenW(copy.get()), static_cast<INT>(copy.length()));
        UINT prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(copy.get()) - sizeof prefix, sizeof prefix);
        EXPECT_EQ(prefix, std::wcslen(text)) << "published: stands just before the text";
        EXPECT_EQ(copy.length(), prefix);
    }
}

TEST(Bstr, GivenLengthCountsWhateverTheTextHolds)
{
    kel::Bstr text;
    text.reset(SysAllocStringLen(L"ab\0cd", 5));
    EXPECT_EQ(text.length(), 5U);
    EXPECT_EQ(lstrlenW(text.get()), 2);
    EXPECT_EQ(std::wmemcmp(text.get(), L"ab\0cd", 6), 0);

    text.reset(SysAllocStringLen(L"abcdef", 3));
    EXPECT_STREQ(text.get(), L"abc") << "ended where the length says";

    text.reset(SysAllocStringLen(nullptr, 1000));
    EXPECT_EQ(text.length(), 1000U);
    EXPECT_EQ(std::wstring(text.get(), 1001), std::wstring(1001, L'\0'));
}
