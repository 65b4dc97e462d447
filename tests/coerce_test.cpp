// What becomes of call arguments that have another type than the parameter.

#include "support/probe.h"

#include <cfenv>
#include <cmath>
#include <limits>

using namespace keltest;
using Coerce = InvokeTest;

static const std::wstring kMismatch = std::to_wstring(DISP_E_TYPEMISMATCH);
static const std::wstring kOverflow = std::to_wstring(DISP_E_OVERFLOW);

/// In a host that has unmasked the traps of floating point.
TEST_F(Coerce, ArgumentsAreConvertedAsPublished)
{
    feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW);
    struct Case
    {
        VARIANT given;
        std::wstring number, flag, text;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {VARIANT{}, L"3:0", L"11:0", L"8:"},
        {integer(-7), L"3:-7", L"11:-1", L"8:-7"},
        {integer(-7, VT_INT), L"3:-7", L"11:-1", L"8:-7"},
        {integer(300, VT_I2), L"3:300", L"11:-1", L"8:300"},
        {integer(0xFE, VT_I1), L"3:-2", L"11:-1", L"8:-2"},
        {integer(0xFE, VT_UI1), L"3:254", L"11:-1", L"8:254"},
        {integer(-1, VT_UI2), L"3:65535", L"11:-1", L"8:65535"},
        {integer(-1, VT_UI4), kOverflow, L"11:-1", L"8:4294967295"},
        {integer(5, VT_UINT), L"3:5", L"11:-1", L"8:5"},
        {variant(VT_I8, &VARIANT::llVal, std::int64_t{1} << 40), kOverflow, L"11:-1", L"8:1099511627776"},
        {variant(VT_UI8, &VARIANT::ullVal, ~std::uint64_t{0}), kOverflow, L"11:-1",
         L"8:18446744073709551615"},
        {variant(VT_I8, &VARIANT::llVal, std::int64_t{INT32_MIN}), L"3:-2147483648", L"11:-1",
         L"8:-2147483648"},
        {integer(VARIANT_TRUE, VT_BOOL), L"3:-1", L"11:-1", L"8:-1"},
        {integer(1, VT_BOOL), L"3:1", L"11:1", L"8:-1"},
        {integer(0, VT_BOOL), L"3:0", L"11:0", L"8:0"},
        {real(0.5), L"3:0", L"11:-1", L"8:0.5"},
        {real(1.5), L"3:2", L"11:-1", L"8:1.5"},
        {real(-2.5), L"3:-2", L"11:-1", L"8:-2.5"},
        {real(0.1 + 0.2), L"3:0", L"11:-1", L"8:0.3"},
        {real(2147483647.4), L"3:2147483647", L"11:-1", L"8:2147483647.4"},
        {real(2147483647.5), kOverflow, L"11:-1", L"8:2147483647.5"},
        {real(-2147483648.5), L"3:-2147483648", L"11:-1", L"8:-2147483648.5"},
        {real(1e300), kOverflow, L"11:-1", L"8:1E+300"},
        {real(infinity), kOverflow, L"11:-1", kOverflow},
        {real(std::nan("")), kOverflow, L"11:-1", kOverflow},
        {variant(VT_R8, &VARIANT::llVal, std::int64_t{0x7FF0'0000'0000'0001}), kOverflow, L"11:-1",
         kOverflow},
        {integer(0x7F800001, VT_R4), kOverflow, L"11:-1", kOverflow},
        {integer(0x7F800000, VT_R4), kOverflow, L"11:-1", kOverflow},
        {real(5e-324), L"3:0", L"11:-1", L"8:4.94065645841247E-324"},
        {real(36526.75, VT_DATE), L"3:36527", L"11:-1", L"8:36526.75"},
        {variant(VT_R4, &VARIANT::fltVal, 0.1F), L"3:0", L"11:-1", L"8:0.1"},
        {currency(25000), L"3:2", L"11:-1", L"8:2.5"},
        {currency(-1), L"3:0", L"11:-1", L"8:-0.0001"},
        {currency(-1000000), L"3:-100", L"11:-1", L"8:-100"},
        {currency(INT64_MIN), kOverflow, L"11:-1", L"8:-922337203685477.5808"},
        {text(L"42"), L"3:42", L"11:-1", L"8:42"},
        {text(L" -3.5e1 "), L"3:-35", L"11:-1", L"8: -3.5e1 "},
        {text(L"0"), L"3:0", L"11:0", L"8:0"},
        {text(L"TRUE"), kMismatch, L"11:-1", L"8:TRUE"},
        {text(L"false"), kMismatch, L"11:0", L"8:false"},
        {text(L""), kMismatch, kMismatch, L"8:"},
        {text(L"12 apples"), kMismatch, kMismatch, L"8:12 apples"},
        {text(L"nan"), kMismatch, kMismatch, L"8:nan"},
        {text(L"-inf"), kMismatch, kMismatch, L"8:-inf"},
        {text(L"1,234"), kMismatch, kMismatch, L"8:1,234"},
        {text(L"0x10"), kMismatch, kMismatch, L"8:0x10"},
        {text(L"1e999"), kOverflow, kOverflow, L"8:1e999"},
        {text(L"1e-999"), kMismatch, kMismatch, L"8:1e-999"},
        {text(L"3000000000"), kOverflow, L"11:-1", L"8:3000000000"},
        {integer(0, VT_NULL), kMismatch, kMismatch, kMismatch},
        {integer(5, VT_ERROR), kMismatch, kMismatch, kMismatch},
        {integer(5, VT_DECIMAL), kMismatch, kMismatch, kMismatch},
        {integer(5, VT_ARRAY | VT_I4), kMismatch, kMismatch, kMismatch},
        {integer(5, 0x7777), kMismatch, kMismatch, kMismatch},
        {object(&part), kMismatch, kMismatch, kMismatch},
    };
    for (const Case& row : cases) {
        const auto check = [&](DISPID member, const std::wstring& expected) {
            const HRESULT answer = call(member, {row.given});
            const bool isDone = answer == S_OK;
            EXPECT_EQ(isDone ? shown() : std::to_wstring(answer), expected) << row.given.vt << ", " << member;
            EXPECT_TRUE(isDone ? badArgument == 77 : badArgument == 0 && shown() == L"3:4711");
        };
        check(kNumber, row.number);
        check(kKind, row.number);
        check(kFlag, row.flag);
        check(kText, row.text);
    }
    fedisableexcept(FE_ALL_EXCEPT);
}

TEST_F(Coerce, ATextThatQtHasNoRoomForIsNoNumberAndNoWordWhateverItBeginsWith)
{
    struct
    {
        UINT length;
        wchar_t text[5];
    } texts[] = {{(1U << 30) + 1, L"7"}, {(1U << 30) + 4, L"true"}, {~0U, L"7"}};
    for (auto& [length, characters] : texts)
        for (const DISPID member : {kNumber, kFlag})
            EXPECT_EQ(call(member, {variant(VT_BSTR, &VARIANT::bstrVal, BSTR{characters})}),
                      DISP_E_TYPEMISMATCH)
                << length;
}

TEST_F(Coerce, ReferencesAreFollowedToTheValue)
{
    std::int64_t storage = 0x4142434445464703;
    VARIANT number = integer(12);
    VARIANT twice = reference(VT_I4, &number.lVal);
    VARIANT thrice = reference(VT_VARIANT, &number);
    VARIANT word = text(L"77");
    IUnknown* held = &part;
    for (const auto& [given, expected] : std::initializer_list<std::pair<VARIANT, const wchar_t*>>{
             {reference(VT_UI1, &storage), L"3:3"},
             {reference(VT_I2, &storage), L"3:18179"},
             {reference(VT_I4, &number.lVal), L"3:12"},
             {reference(VT_VARIANT, &number), L"3:12"},
             {reference(VT_VARIANT, &twice), L"3:12"},
             {reference(VT_BSTR, &word.bstrVal), L"3:77"}}) {
        EXPECT_EQ(call(kNumber, {given}), S_OK);
        EXPECT_EQ(shown(), expected);
    }
    for (const VARIANT& wrong :
         {reference(VT_I4, nullptr), reference(VT_VARIANT, nullptr), reference(VT_EMPTY, &storage),
          reference(VT_VARIANT, &thrice), reference(VT_ARRAY | VT_I4, &storage)}) {
        EXPECT_EQ(call(kNumber, {wrong}), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(call(kAny, {wrong}), DISP_E_TYPEMISMATCH);
        EXPECT_EQ(badArgument, 0U);
    }
    EXPECT_EQ(call(kAny, {reference(VT_VARIANT, &twice)}), S_OK);
    EXPECT_EQ(shown(), L"3:12") << "a variable goes in as its plain value";
    EXPECT_EQ(call(kAny, {integer(5, VT_ARRAY | VT_UI1)}), S_OK);
    EXPECT_EQ(result.vt, VT_ARRAY | VT_UI1) << "what is no reference goes in as it is";
    EXPECT_EQ(call(kPartMember, {reference(VT_UNKNOWN, &held)}), S_OK);
    EXPECT_EQ(result.punkVal, &part);
    EXPECT_EQ(part.count, 2U);
}
