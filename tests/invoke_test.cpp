// Calls by identifier: kinds, counts, names, results and failures.

#include "support/allocations.h"
#include "support/probe.h"

using namespace keltest;
using Invoke = InvokeTest;

TEST_F(Invoke, ObjectsAreAskedForTheWantedInterfaceAndGivenBack)
{
    const VARIANT given = object(&part);
    for (const auto& [member, type] : {std::pair{kPartMember, VT_DISPATCH}, {kObject, VT_UNKNOWN}}) {
        EXPECT_EQ(call(member, {given}), S_OK);
        EXPECT_EQ(result.vt, type);
        EXPECT_EQ(result.punkVal, &part);
        EXPECT_EQ(part.count--, 2U) << "one for the receiver";
        EXPECT_EQ(call(member, {integer(0, VT_UNKNOWN)}), S_OK) << "null needs no interface";
        EXPECT_EQ(result.vt, type);
        EXPECT_EQ(result.punkVal, nullptr);
        for (const VARIANT& wrong : {integer(1), VARIANT{}, text(L"part"), object(&probe)})
            EXPECT_EQ(call(member, {wrong}), DISP_E_TYPEMISMATCH);
    }
    VARIANT argument = given;
    DISPPARAMS parameters{&argument, nullptr, 1, 0};
    EXPECT_EQ(info->Invoke(&probe, kPartMember, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(part.count, 1U) << "nobody wanted the result";
}

TEST_F(Invoke, OutputsThatTheMemberLeavesAloneBecomeEmpty)
{
    probe.isSilent = true;
    for (const HRESULT answer : {S_OK, S_FALSE}) {
        probe.answer = answer;
        for (const DISPID member : {kText, kNumber, kFlag, kKind, kAny, kPartMember, kObject}) {
            const bool wantsObject = member == kPartMember || member == kObject;
            EXPECT_EQ(call(member, {integer(0, wantsObject ? VT_UNKNOWN : VT_I4)}), answer);
            EXPECT_EQ(shown(), L"empty") << member;
        }
        EXPECT_EQ(call(kMany, {text(L"")}), answer);
        EXPECT_EQ(shown(), L"empty") << "no result at all";
    }
    probe.isSilent = false;
    EXPECT_EQ(call(kFlag, {integer(1, VT_BOOL)}), S_FALSE);
    EXPECT_EQ(shown(), L"11:1") << "written in spite of S_FALSE, and as it was written";
}

TEST_F(Invoke, KindOfMemberHasToBeTheOneAskedFor)
{
    const VARIANT name = text(L"n");
    const VARIANT one = integer(1);
    const WORD nonsense[] = {0, 5, 6, 7, 9, 16, 0x8001};
    for (const WORD flags : nonsense)
        EXPECT_EQ(call(kText, {name}, flags), DISP_E_MEMBERNOTFOUND) << flags;
    for (const WORD flags : {DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF})
        EXPECT_EQ(call(kText, {name}, flags, {DISPID_PROPERTYPUT}), DISP_E_MEMBERNOTFOUND) << flags;
    EXPECT_EQ(call(kEntry, {one}, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND);
    for (const DISPID none : {DISPID_UNKNOWN, 8, 1000, INT32_MIN})
        EXPECT_EQ(call(none, {name}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(shown(), L"3:4711") << "no member ran";

    for (const WORD flags : {DISPATCH_PROPERTYGET, WORD{DISPATCH_METHOD | DISPATCH_PROPERTYGET}}) {
        EXPECT_EQ(call(kEntry, {one}, flags), S_OK);
        EXPECT_EQ(shown(), L"8:1");
    }
    EXPECT_EQ(call(kText, {name}, DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
}

TEST_F(Invoke, PutsNeedTheirValueByItsName)
{
    const VARIANT value = text(L"v");
    const VARIANT three = integer(3);
    const VARIANT passed = object(&part);
    EXPECT_EQ(call(kEntry, {value, three}, DISPATCH_PROPERTYPUT, {DISPID_PROPERTYPUT}), S_OK);
    EXPECT_EQ(call(kEntry, {three, value}, DISPATCH_PROPERTYPUT, {0, DISPID_PROPERTYPUT}), S_OK);
    EXPECT_EQ(
        call(kEntry, {value, three}, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF, {DISPID_PROPERTYPUT}),
        S_OK);
    EXPECT_EQ(call(kEntry, {passed, three}, DISPATCH_PROPERTYPUTREF, {DISPID_PROPERTYPUT}), S_OK);
    EXPECT_EQ(probe.seen, L"put 3 vput 3 vput 3 vputref 3 object");
    EXPECT_EQ(part.count, 1U);

    using Names = std::vector<DISPID>;
    for (const Names& names : {Names{}, Names{0}, Names{1}, Names{1, 0}, Names{0, 1}, Names{-3, -3},
                               Names{-3, 1}, Names{-3, 7}, Names{INT32_MIN, -3}})
        EXPECT_EQ(call(kEntry, {value, three}, DISPATCH_PROPERTYPUT, names), DISP_E_PARAMNOTFOUND)
            << names.size();
    EXPECT_EQ(call(kEntry, {value}, DISPATCH_PROPERTYPUT, {-3}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(call(kNumber, {three}, DISPATCH_METHOD, {-3}), DISP_E_PARAMNOTFOUND);
}

TEST_F(Invoke, ArgumentsAreCountedNamedAndLeftOutAsPublished)
{
    const VARIANT first = text(L"f");
    const VARIANT number = integer(5);
    const VARIANT passed = object(&part);
    VARIANT hidden = omitted();
    const struct
    {
        std::vector<VARIANT> arguments; ///< last first
        std::vector<DISPID> names;
        const wchar_t* seen;
        HRESULT answer = S_OK;
        UINT badArgument = 77;
    } rows[] = {
        {{first}, {}, L"f,10:-2147352572,0,null"},
        {{number, first}, {}, L"f,3:5,0,null"},
        {{passed, number, number, first}, {}, L"f,3:5,5,part"},
        {{omitted(), number, omitted(), first}, {}, L"f,10:-2147352572,5,null"},
        {{number, first}, {2}, L"f,10:-2147352572,5,null"},
        {{passed, number, first}, {3, 2}, L"f,10:-2147352572,5,part"},
        {{number, passed, first, number}, {2, 3, 0, 1}, L"f,3:5,5,part"},
        {{}, {}, L"", DISP_E_BADPARAMCOUNT},
        {{number, number, number, number, first}, {}, L"", DISP_E_BADPARAMCOUNT},
        {{first}, {0, 1}, L"", DISP_E_BADPARAMCOUNT},
        {{number}, {2}, L"", DISP_E_PARAMNOTOPTIONAL},
        {{number, omitted()}, {}, L"", DISP_E_PARAMNOTOPTIONAL, 1},
        {{number, reference(VT_VARIANT, &hidden)}, {}, L"", DISP_E_PARAMNOTOPTIONAL, 1},
        {{number, first}, {4}, L"", DISP_E_PARAMNOTFOUND, 0},
        {{number, first}, {0}, L"", DISP_E_PARAMNOTFOUND, 0},
        {{number, number, first}, {1, 1}, L"", DISP_E_PARAMNOTFOUND, 1},
        {{number, number, number, first}, {}, L"", DISP_E_TYPEMISMATCH, 0},
        {{passed, text(L"x"), number, first}, {}, L"", DISP_E_TYPEMISMATCH, 1},
        {{real(1e10), number, first}, {}, L"", DISP_E_OVERFLOW, 0},
        {{text(L"x"), first}, {2}, L"", DISP_E_TYPEMISMATCH, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        probe.seen.clear();
        EXPECT_EQ(call(kMany, row.arguments, DISPATCH_METHOD, row.names), row.answer);
        EXPECT_EQ(badArgument, row.badArgument);
        EXPECT_EQ(probe.seen, row.seen);
        EXPECT_EQ(shown(), row.answer == S_OK ? L"empty" : L"3:4711");
        EXPECT_EQ(part.count, 1U);
    }
}

TEST_F(Invoke, NullsAreRefusedWhereSomethingIsNeeded)
{
    VARIANT argument = integer(1);
    DISPPARAMS none{nullptr, nullptr, 1, 0};
    DISPPARAMS noNames{&argument, nullptr, 1, 1};
    DISPPARAMS good{&argument, nullptr, 1, 0};
    const auto invoke = [&](void* instance, DISPPARAMS* parameters) {
        return info->Invoke(instance, kNumber, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(invoke(nullptr, &good), E_INVALIDARG);
    EXPECT_EQ(invoke(&probe, nullptr), E_INVALIDARG);
    EXPECT_EQ(invoke(&probe, &none), E_INVALIDARG);
    EXPECT_EQ(invoke(&probe, &noNames), E_INVALIDARG);
    EXPECT_EQ(invoke(&probe, &good), S_OK);
    argument = integer(1, VT_NULL);
    EXPECT_EQ(invoke(&probe, &good), DISP_E_TYPEMISMATCH);
}

TEST_F(Invoke, FailureOfTheMemberIsToldAsAnException)
{
    std::memset(&exception, 0x55, sizeof exception);
    EXPECT_EQ(call(kFail, {integer(E_OUTOFMEMORY)}), DISP_E_EXCEPTION);
    EXPECT_EQ(shown(), L"empty");
    EXPECT_EQ(exception.scode, E_OUTOFMEMORY);
    EXPECT_EQ(exception.bstrDescription, nullptr);
    EXPECT_EQ(exception.wCode, 0);
    EXPECT_EQ(exception.pfnDeferredFillIn, nullptr);
    EXPECT_EQ(call(kFail, {integer(5)}), 5) << "a success goes back as it is";
}

TEST_F(Invoke, ExceptionOfTheMemberPassesAndLeavesNothingBehind)
{
    probe.isThrowing = true;
    const VARIANT passed = object(&part);
    VARIANT arguments[] = {passed, integer(1), integer(2), real(1234567.25)};
    DISPPARAMS parameters{arguments, nullptr, 4, 0};
    const auto invoke = [&] {
        EXPECT_THROW(info->Invoke(&probe, kMany, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
                     std::runtime_error);
    };
    invoke();
    const std::size_t before = allocations::live();
    invoke();
    EXPECT_EQ(allocations::live(), before);
    EXPECT_EQ(part.count, 1U);
}
