// BSTRs: what the length prefix, the ending zero and nulls come to.

#include "KelComWrapper/bstr.h"

#include <cwchar>
#include <gtest/gtest.h>
#include <string>

TEST(Bstr, HasItsLengthBeforeAndAZeroBehindWhateverTheTextHolds)
{
    const auto expectText = [](BSTR made, const std::wstring& text) {
        kel::Bstr owner;
        owner.reset(made);
        UINT prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(made) - sizeof prefix, sizeof prefix);
        EXPECT_EQ(text.size(), prefix) << "published: stands just before the text";
        EXPECT_EQ(prefix, owner.length());
        EXPECT_EQ(text + L'\0', std::wstring(made, prefix + 1));
        EXPECT_EQ(static_cast<INT>(std::wcslen(text.c_str())), lstrlenW(made));
    };
    for (const wchar_t* text : {L"", L"a", L"\U0001F600 beyond the first plane"})
        expectText(SysAllocString(text), text);
    expectText(SysAllocStringLen(L"ab\0cd", 5), std::wstring(L"ab\0cd", 5));
    expectText(SysAllocStringLen(L"abcdef", 3), L"abc");
    expectText(SysAllocStringLen(nullptr, 1000), std::wstring(1000, L'\0'));

    EXPECT_EQ(nullptr, SysAllocString(nullptr));
    EXPECT_EQ(0U, SysStringLen(nullptr));
    EXPECT_EQ(0, lstrlenW(nullptr));
    SysFreeString(nullptr);
}
