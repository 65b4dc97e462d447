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
using kel::Variant;

namespace
{

constexpr GUID kProbe{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}};
constexpr GUID kPart{1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 2}};

/// In place of the answer of a member that threw.
constexpr HRESULT kThrown = 7777;

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
        const auto invoke = [&](VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
            HRESULT answer = kThrown;
            feenableexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW); // as a host may do
            try {
                answer = info->Invoke(&probe, id, flags, &parameters, result, exception, badArgument);
            } catch (const std::runtime_error&) {}
            fedisableexcept(FE_ALL_EXCEPT);
            return answer;
        };
        probe.seen.clear();
        VARIANT written = Variant(4711).get();
        EXCEPINFO exception;
        std::memset(&exception, 0x55, sizeof exception);
        UINT badArgument = 77;
        const HRESULT answer = invoke(&written, &exception, &badArgument);
        const Variant result = Variant::adopt(written);
        std::string words = answer == S_OK ? "" : ' ' + wordOf(answer);
        if (answer == DISP_E_EXCEPTION && !exception.bstrDescription && !exception.pfnDeferredFillIn)
            words += ':' + std::to_string(exception.scode + exception.wCode);
        if (badArgument != 77)
            words += '@' + std::to_string(badArgument);
        const bool isObject = (written.vt == VT_DISPATCH || written.vt == VT_UNKNOWN) && written.punkVal;
        const std::string word = wordOf(written, isObject ? "part" : "null");
        EXPECT_TRUE(!isObject || written.punkVal == &part);
        words += (word == "i4:4711" ? "" : ' ' + word) + probe.seen;
        EXPECT_EQ(isObject ? 2U : 1U, part.count);
        EXPECT_EQ(answer, invoke(nullptr, nullptr, nullptr));
        return words.substr(1);
    }

    Probe probe;
    Part part{true}, stranger{false};
    const TypeLibraryFile file{stamped(contentOf(KEL_TESTS "invoke_library.xml"))};
    const kel::ComPtr<ITypeInfo> info = typeInfo(file.widePath(), kProbe);
    const std::map<std::string, IUnknown*> objects{{"part", &part}, {"stranger", &stranger}};
    Variants variants{objects};
};

TEST_F(Invoke, ArgumentsAreConvertedAsListed)
{
    forEachLine(KEL_TESTS "invoke_coercions.txt", [this](const std::string& line) {
        std::istringstream words(line);
        std::string given, expected;
        words >> given;
        for (const char* member : {"number", "flag", "text"}) {
            words >> expected;
            EXPECT_EQ(expected, call(member, DISPATCH_METHOD, {variants.of(given)})) << line;
        }
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
            EXPECT_EQ("TYPEMISMATCH@0", call(member, DISPATCH_METHOD, {given})) << length;
    }
}

TEST_F(Invoke, CallsAnswerAsListedAndNothingIsLeft)
{
    const auto makeCall = [this](const std::string& line) {
        std::istringstream words(line);
        std::string member, word;
        WORD flags = 0;
        words >> member >> flags;
        if (member == ":") {
            probe.answer = flags;
            probe.isSilent = line.find("silent") != std::string::npos;
            probe.isThrowing = line.find("throws") != std::string::npos;
            return;
        }
        Variants own{objects};
        std::vector<VARIANT> arguments;
        std::vector<DISPID> names;
        while (words >> word && word != "->") {
            const std::size_t sign = word.find('=');
            if (sign != std::string::npos)
                names.push_back(std::stoi(word));
            if (sign + 1 != word.size())
                arguments.push_back(own.of(word.substr(sign + 1))); // all of it where there is no name
        }
        EXPECT_EQ(line.substr(line.find("->") + 3), call(member, flags, arguments, names)) << line;
    };
    forEachLine(KEL_TESTS "invoke_calls.txt", makeCall);
    const std::size_t before = allocations::live();
    forEachLine(KEL_TESTS "invoke_calls.txt", makeCall);
    EXPECT_EQ(before, allocations::live());
}

TEST_F(Invoke, NullsAreRefusedWhereSomethingIsNeeded)
{
    VARIANT one = variants.of("i4:1");
    DISPPARAMS none{nullptr, nullptr, 1, 0}, noNames{&one, nullptr, 1, 1}, good{&one, nullptr, 1, 0};
    const auto invoke = [&](void* instance, DISPPARAMS* parameters) {
        return info->Invoke(instance, 2, DISPATCH_METHOD, parameters, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(E_INVALIDARG, invoke(nullptr, &good));
    for (DISPPARAMS* const parameters : {static_cast<DISPPARAMS*>(nullptr), &none, &noNames})
        EXPECT_EQ(E_INVALIDARG, invoke(&probe, parameters));
}

} // namespace
