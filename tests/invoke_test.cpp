// Calls by identifier of a hand-made object whose members take and return one value of each type:
// conversions, kinds, counts, names, results and failures. Also BSTRs: the length prefix, the ending zero and
// nulls.

#include "support/dom_fixture.h"
#include "support/type_library_file.h"
#include "support/variant_text.h"

#include <cfenv>
#ifdef __SSE__
#include <xmmintrin.h>
#endif
#include <stdexcept>
#include <typeinfo>

using namespace keltest;

namespace
{

/// A hand-made object with the slots that `invoke_library.xml` describes.
struct Probe
{
    template <class Value>
    static HRESULT give(Probe* probe, Value value, Value* result)
    {
        EXPECT_GT(probe->references, 0U) << "called after its last reference was released";
        if (probe->manner == "silent")
            return probe->answer;
        if constexpr (std::is_same_v<Value, BSTR>)
            *result = SysAllocStringLen(value, SysStringLen(value));
        else if constexpr (std::is_same_v<Value, IUnknown*>)
            *result = kel::ComPtr<IUnknown>(value).detach();
        else
            *result = value;
        return probe->answer;
    }
    template <class... Values>
    static HRESULT take(Probe* probe, Values... values)
    {
        if (probe->manner == "throws")
            throw std::runtime_error("from a member");
        for (const std::string& word : {seenAs(values)...})
            probe->seen += (probe->seen.empty() ? ' ' : ',') + word;
        return probe->answer;
    }
    static std::string seenAs(BSTR text) { return std::string(1, static_cast<char>(*text)); }
    static std::string seenAs(INT number) { return std::to_string(number); }
    static std::string seenAs(IUnknown* object) { return object ? "peer" : "null"; }
    static std::string seenAs(const VARIANT& value) { return wordOf(value); }

    template <int Step>
    static ULONG count(Probe* probe)
    {
        return probe->references += static_cast<ULONG>(Step);
    }

    using Slot = void (*)();
    template <class... Functions>
    static std::array<Slot, 9 + sizeof...(Functions)> slotsOf(Functions*... functions)
    {
        return {{{},
                 reinterpret_cast<Slot>(
                     &typeid(IUnknown)), // sanitizers look for an offset and a type before the slots
                 {},
                 reinterpret_cast<Slot>(count<1>),
                 reinterpret_cast<Slot>(count<-1>),
                 {},
                 {},
                 {},
                 {},
                 reinterpret_cast<Slot>(functions)...}};
    }
    inline static const auto kSlots = slotsOf(
        give<BSTR>, give<INT>, give<VARIANT_BOOL>, give<INT>, give<VARIANT>, give<IUnknown*>, give<IUnknown*>,
        give<INT>, take<INT, BSTR>, take<INT, IUnknown*>, take<BSTR, VARIANT, INT, IUnknown*>);
    const Slot* vtable = kSlots.data() + 2;
    HRESULT answer = S_OK;
    ULONG references = 1;
    std::string manner, seen;
};

/// An argument that releases the object being called when it is asked for an interface.
struct Releasing final : IUnknown
{
    Releasing(Probe& object, IUnknown& given) : called(object), peer(given) {}
    HRESULT QueryInterface(const GUID& iid, void** found) override
    {
        --called.references;
        return peer.QueryInterface(iid, found);
    }
    ULONG AddRef() override { return 1; }
    ULONG Release() override { return 1; }

    Probe& called;
    IUnknown& peer;
};

struct Invoke : testing::Test
{
    /// Calls with all outputs, and again with none. \return the outcome in words
    std::string call(const std::string& member, WORD flags, Arguments arguments)
    {
        const DISPID id = std::isalpha(member[0]) ? idOf(*info, std::wstring(member.begin(), member.end()))
                                                  : std::stoi(member);
        DISPPARAMS parameters = arguments.parameters();
        const auto invoke = [&](VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
            HRESULT answer = 7777;    // stays when the member throws
            fesetround(roundingMode); // as a host may do, like the next two
            feenableexcept(FE_ALL_EXCEPT);
#ifdef __SSE__
            _mm_setcsr(_mm_getcsr() & ~_MM_MASK_DENORM);
#endif
            try {
                answer = info->Invoke(&probe, id, flags, &parameters, result, exception, badArgument);
            } catch (const std::runtime_error&) {}
            fesetenv(FE_DFL_ENV);
            return answer;
        };
        probe.seen.clear();
        VARIANT written = Variant(4711).get();
        EXCEPINFO exception;
        std::memset(&exception, 0x55, sizeof exception);
        UINT badArgument = 77;
        const HRESULT answer = invoke(&written, &exception, &badArgument);
        const Variant result = Variant::adopt(written);
        std::string words = answer == S_OK ? "" : ' ' + asWord(kel::describe(answer));
        if (answer == DISP_E_EXCEPTION && !exception.bstrDescription && !exception.pfnDeferredFillIn)
            words += ':' + std::to_string(exception.scode + exception.wCode);
        if (badArgument != 77)
            words += '@' + std::to_string(badArgument);
        const bool isPeer = written.punkVal == peer.get();
        const std::string word = wordOf(written, isPeer ? "peer" : written.punkVal ? "another" : "null");
        words += (word == "i4:4711" ? "" : ' ' + word) + probe.seen;
        peer->AddRef();
        EXPECT_EQ(isPeer ? 2U : 1U, peer->Release());
        EXPECT_EQ(1U, probe.references) << "a reference too many or too few";
        EXPECT_EQ(answer, invoke(nullptr, nullptr, nullptr));
        return words.substr(1);
    }

    Probe probe;
    int roundingMode = FE_TONEAREST;
    const TypeLibraryFile file{stamped(contentOf(QStringLiteral(KEL_TESTS "invoke_library.xml")))};
    const kel::ComPtr<ITypeInfo> info = typeInfo(file.widePath.c_str(), {1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}});
    const kel::ComPtr<ITypeInfo> peer = typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMNode);
    const kel::ComPtr<IXMLDOMDocument> stranger = newDocument();
    Variants variants{{{"peer", peer.get()}, {"stranger", stranger.get()}}};
};

TEST_F(Invoke, ArgumentsAreConvertedAsListedAndTextsTooLongForQtAreRefused)
{
    forEachRow(KEL_TESTS "invoke_coercions.txt", [this](Row words) {
        std::string given, expected;
        words >> given;
        for (const char* member : {"number", "flag", "text"}) {
            words >> expected;
            for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO, FE_TONEAREST}) {
                roundingMode = mode;
                EXPECT_EQ(expected, call(member, DISPATCH_METHOD, {{variants.of(given)}})) << words.where;
            }
        }
    });

    // Texts that Qt cannot hold are not numbers or words, whatever they begin with.
    for (const UINT length : {(1U << 30) + 1, (1U << 30) + 4, ~0U})
        for (const char* word : {"bstr:7", "bstr:true"}) {
            const VARIANT& given = variants.of(word);
            reinterpret_cast<UINT*>(given.bstrVal)[-1] = length;
            for (const char* member : {"number", "flag"})
                EXPECT_EQ("a_value_has_the_wrong_type@0", call(member, DISPATCH_METHOD, {{given}})) << length;
        }
}

TEST_F(Invoke, CallsReturnWhatIsListedAndLeakNothing)
{
    expectNothingLeft([this] {
        forEachRow(KEL_TESTS "invoke_calls.txt", [this](Row words) {
            std::string member, expected;
            int flags = 0;
            words >> member >> flags;
            if (member == ":") {
                probe.answer = flags;
                words >> probe.manner;
                return;
            }
            Variants own{variants.objects};
            const Arguments arguments = own.argumentsOf(words);
            std::getline(words >> std::ws, expected);
            EXPECT_EQ(expected, call(member, static_cast<WORD>(flags), arguments)) << words.where;
        });
    });
}

TEST_F(Invoke, HoldsTheObjectWhoseLastReferenceAnArgumentReleases)
{
    Releasing argument(probe, *peer);
    variants.objects["releasing"] = &argument;
    DISPPARAMS parameters{&variants.of("unknown:releasing"), nullptr, 1, 0};
    const DISPID member = idOf(*info, L"peer");
    Variant result;
    EXPECT_EQ(S_OK,
              info->Invoke(&probe, member, DISPATCH_METHOD, &parameters, result.put(), nullptr, nullptr));
    EXPECT_EQ(0U, probe.references);
}

TEST(Bstr, HasItsLengthBeforeTheTextAndAZeroAfterIt)
{
    const std::wstring zeroWithin(L"ab\0cd", 5), beyond = L"\U0001F600 beyond the first plane";
    const std::pair<BSTR, std::wstring> cases[] = {
        {SysAllocString(L""), L""},
        {SysAllocString(beyond.c_str()), beyond},
        {SysAllocStringLen(zeroWithin.c_str(), 5), zeroWithin},
        {SysAllocStringLen(L"abcdef", 3), L"abc"},
        {SysAllocStringLen(nullptr, 1000), std::wstring(1000, L'\0')},
    };
    for (const auto& [made, text] : cases) {
        EXPECT_EQ(text.size(), reinterpret_cast<UINT*>(made)[-1]) << "published: directly before the text";
        EXPECT_EQ(text.size(), SysStringLen(made));
        EXPECT_EQ(text + L'\0', std::wstring(made, text.size() + 1));
        EXPECT_EQ(INT(std::wcslen(text.c_str())), lstrlenW(made));
        SysFreeString(made);
    }
    EXPECT_EQ(nullptr, SysAllocString(nullptr));
    EXPECT_EQ(0U, SysStringLen(nullptr));
    EXPECT_EQ(0, lstrlenW(nullptr));
}

} // namespace
