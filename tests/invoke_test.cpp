// Calls by identifier of an object that takes and gives back one value of each kind: what arguments become,
// kinds, counts, names, results and failures.

#include "support/allocations.h"
#include "support/type_library_file.h"
#include "support/variant_text.h"

#include <cfenv>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <vector>

using namespace keltest;

namespace
{

constexpr GUID kProbe{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
constexpr GUID kPart{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};

/// Counts what is taken of it.
struct Part final : IUnknown
{
    explicit Part(bool answers) : isPart(answers) {}
    HRESULT QueryInterface(const GUID& riid, void** ppv) override
    {
        *ppv = isPart && (riid == IID_IUnknown || riid == kPart) ? this : nullptr;
        count += *ppv ? 1 : 0;
        return *ppv ? S_OK : E_NOINTERFACE;
    }
    ULONG AddRef() override { return ++count; }
    ULONG Release() override { return --count; }
    const bool isPart;
    ULONG count = 1;
};

template <class Value>
Value copyOf(Value value)
{
    return value;
}
BSTR copyOf(BSTR text)
{
    return SysAllocStringLen(text, SysStringLen(text));
}
IUnknown* copyOf(IUnknown* object)
{
    return kel::ComPtr<IUnknown>(object).detach();
}

/// An object made by hand, with the slots that `invoke_library.xml` describes.
struct Probe
{
    template <class Value>
    static HRESULT give(Probe* probe, Value value, Value* result)
    {
        if (!probe->isSilent)
            *result = copyOf(value);
        return probe->answer;
    }
    static HRESULT getEntry(Probe* probe, INT index, BSTR* entry)
    {
        return give(probe, kel::Bstr(std::to_wstring(index).c_str()).get(), entry);
    }
    static HRESULT putEntry(Probe* probe, INT index, BSTR entry)
    {
        return probe->note("put," + std::to_string(index) + ',' + static_cast<char>(*entry));
    }
    static HRESULT putEntryByReference(Probe* probe, INT index, IUnknown* entry)
    {
        return probe->note("putref," + std::to_string(index) + (entry ? ",part" : ",null"));
    }
    static HRESULT many(Probe* probe, BSTR first, VARIANT second, INT third, IUnknown* fourth)
    {
        return probe->note(static_cast<char>(*first) + (',' + wordOf(second)) + ',' + std::to_string(third) +
                           (fourth ? ",part" : ",null"));
    }
    static HRESULT fail(Probe*, INT code, BSTR*) { return code; }
    HRESULT note(const std::string& what)
    {
        if (isThrowing)
            throw std::runtime_error("from a member");
        seen = isSilent ? "" : ' ' + what;
        return answer;
    }

    using Slot = void (*)();
    template <class... Functions>
    static std::array<Slot, 7 + sizeof...(Functions)> slotsOf(Functions*... functions)
    {
        return {{{}, {}, {}, {}, {}, {}, {}, reinterpret_cast<Slot>(functions)...}};
    }
    inline static const auto kSlots =
        slotsOf(give<BSTR>, give<INT>, give<VARIANT_BOOL>, give<INT>, give<VARIANT>, give<IUnknown*>,
                give<IUnknown*>, getEntry, putEntry, putEntryByReference, many, fail);
    const Slot* vtable = kSlots.data();
    HRESULT answer = S_OK;
    bool isSilent = false, isThrowing = false;
    std::string seen;
};

struct Invoke : testing::Test
{
    /// Calls with everything that the caller may want, and once more without. \return the call in words
    std::string call(const std::string& member, WORD flags, std::vector<VARIANT> arguments,
                     std::vector<DISPID> names = {})
    {
        const bool isNumber = member.find_first_not_of("-0123456789") == std::string::npos;
        const DISPID id =
            isNumber ? std::stoi(member) : idOf(*info, std::wstring(member.begin(), member.end()));
        DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                              static_cast<UINT>(names.size())};
        const auto invoke = [&](VARIANT* result, EXCEPINFO* failure, UINT* badArgument) {
            probe.seen.clear();
            feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW); // as a host may do
            const HRESULT answer = info->Invoke(&probe, id, flags, &parameters, result, failure, badArgument);
            fedisableexcept(FE_ALL_EXCEPT);
            return answer;
        };
        VARIANT written = kel::Variant(4711).get();
        UINT badArgument = 77;
        const HRESULT answer = invoke(&written, &exception, &badArgument);
        const auto result = kel::Variant::adopt(written);
        const bool isObject = result.type() == VT_DISPATCH || result.type() == VT_UNKNOWN;
        std::string words = wordOf(answer);
        if (badArgument != 77)
            words += " @" + std::to_string(badArgument);
        if (isObject)
            words += ' ' + wordOf(written, !written.punkVal           ? "null"
                                           : written.punkVal == &part ? "part"
                                                                      : "?");
        else if (wordOf(written) != "i4:4711")
            words += ' ' + wordOf(written);
        words += probe.seen;
        EXPECT_EQ(isObject && written.punkVal ? 2U : 1U, part.count);
        EXPECT_EQ(answer, invoke(nullptr, nullptr, nullptr));
        return words;
    }

    Probe probe;
    Part part{true}, stranger{false};
    EXCEPINFO exception{};
    const TypeLibraryFile file{stamped(contentOf(KEL_TESTS "invoke_library.xml"))};
    const kel::ComPtr<ITypeInfo> info = typeInfo(file.widePath(), kProbe);
    Variants variants{{{"part", &part}, {"stranger", &stranger}}, {}, {}};
};

TEST_F(Invoke, ArgumentsAreConvertedAsListed)
{
    forEachLine("invoke_coercions.txt", [this](const std::string& line) {
        SCOPED_TRACE(line);
        std::istringstream words(line);
        std::string given, number, flag, text;
        words >> given >> number >> flag >> text;
        const auto check = [&](const char* member, const std::string& expected) {
            const bool isRefused = expected == "TYPEMISMATCH" || expected == "OVERFLOW";
            EXPECT_EQ(isRefused ? expected + " @0" : "S_OK " + expected,
                      call(member, DISPATCH_METHOD, {variants.of(given)}));
        };
        check("number", number);
        check("kind", number);
        check("flag", flag);
        check("text", text);
    });
}

TEST_F(Invoke, ATextThatQtHasNoRoomForIsNoNumberAndNoWordWhateverItBeginsWith)
{
    struct
    {
        UINT length;
        wchar_t text[5];
    } texts[] = {{(1U << 30) + 1, L"7"}, {(1U << 30) + 4, L"true"}, {~0U, L"7"}};
    for (auto& [length, characters] : texts) {
        VARIANT given = variants.of("bstr:");
        given.bstrVal = characters;
        for (const char* member : {"number", "flag"})
            EXPECT_EQ("TYPEMISMATCH @0", call(member, DISPATCH_METHOD, {given})) << length;
    }
}

TEST_F(Invoke, CallsAnswerAsListed)
{
    forEachLine("invoke_calls.txt", [this](const std::string& line) {
        SCOPED_TRACE(line);
        std::istringstream words(line);
        std::string member, word;
        WORD flags = 0;
        words >> member >> flags;
        if (member == ":") {
            probe.answer = flags;
            probe.isSilent = line.find("silent") != std::string::npos;
            return;
        }
        std::vector<VARIANT> arguments;
        std::vector<DISPID> names;
        while (words >> word && word != "->") {
            const std::size_t sign = word.find('=');
            if (sign != std::string::npos)
                names.push_back(std::stoi(word));
            if (sign + 1 != word.size())
                arguments.push_back(variants.of(word.substr(sign + 1))); // all of it where there is no name
        }
        EXPECT_EQ(line.substr(line.find("->") + 3), call(member, flags, arguments, names));
    });
}

TEST_F(Invoke, NullsAreRefusedWhereSomethingIsNeeded)
{
    VARIANT argument = variants.of("i4:1");
    DISPPARAMS none{nullptr, nullptr, 1, 0}, noNames{&argument, nullptr, 1, 1},
        good{&argument, nullptr, 1, 0};
    const auto invoke = [&](void* instance, DISPPARAMS* parameters) {
        return info->Invoke(instance, 2, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(E_INVALIDARG, invoke(nullptr, &good));
    for (DISPPARAMS* const parameters : {static_cast<DISPPARAMS*>(nullptr), &none, &noNames})
        EXPECT_EQ(E_INVALIDARG, invoke(&probe, parameters));
}

TEST_F(Invoke, FailureOfTheMemberIsToldAsAnException)
{
    std::memset(&exception, 0x55, sizeof exception);
    EXPECT_EQ(std::to_string(DISP_E_EXCEPTION) + " empty",
              call("fail", DISPATCH_METHOD, {variants.of("i4:-9")}));
    EXPECT_EQ(-9, exception.scode);
    EXPECT_EQ(nullptr, exception.bstrDescription);
    EXPECT_EQ(0, exception.wCode);
    EXPECT_EQ(nullptr, exception.pfnDeferredFillIn);
}

TEST_F(Invoke, ExceptionOfTheMemberPassesAndLeavesNothingBehind)
{
    probe.isThrowing = true;
    VARIANT arguments[] = {variants.of("dispatch:part"), variants.of("i4:1"), variants.of("i4:2"),
                           variants.of("r8:1234567.25")};
    DISPPARAMS parameters{arguments, nullptr, 4, 0};
    std::size_t before = 0;
    for (int round = 0; round < 2; ++round) {
        before = allocations::live();
        EXPECT_THROW(info->Invoke(&probe, -525, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
                     std::runtime_error);
    }
    EXPECT_EQ(before, allocations::live());
    EXPECT_EQ(1U, part.count);
}

} // namespace
