// Calls members of a test object by identifier. For each type that a parameter can have, except IDispatch,
// the object has a member that takes a value of this type and returns it. Tests conversions, kinds of calls,
// counts and names of arguments, results and failures. Also tests BSTRs.

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

/// An object with the slots that `invoke_library.xml` describes.
struct Probe
{
    template <class Value>
    static HRESULT echo(Probe* probe, Value value, Value* result)
    {
        EXPECT_GT(probe->references, 0U) << "Invoke must hold a reference during the call";
        if (probe->behaviour == "silent")
            return probe->code;
        if constexpr (std::is_same_v<Value, BSTR>)
            *result = SysAllocStringLen(value, SysStringLen(value));
        else if constexpr (std::is_same_v<Value, IUnknown*>)
            *result = kel::ComPtr<IUnknown>(value).detach();
        else
            *result = value;
        return probe->code;
    }
    template <class... Values>
    static HRESULT record(Probe* probe, Values... values)
    {
        if (probe->behaviour == "throws")
            throw std::runtime_error("from a member");
        for (const std::string& word : {recorded(values)...})
            probe->received += (probe->received.empty() ? ' ' : ',') + word;
        return probe->code;
    }
    static std::string recorded(BSTR text) { return std::string(1, static_cast<char>(*text)); }
    static std::string recorded(INT number) { return std::to_string(number); }
    static std::string recorded(IUnknown* object) { return object ? "peer" : "null"; }
    static std::string recorded(const VARIANT& value) { return wordOf(value); }

    template <int Step>
    static ULONG count(Probe* probe)
    {
        return probe->references += static_cast<ULONG>(Step);
    }

    using Slot = void (*)();
    template <class... Functions>
    static std::vector<Slot> slotsOf(Functions*... functions)
    {
        // Sanitizers read an offset and a type before the slots.
        return {nullptr, reinterpret_cast<Slot>(&typeid(IUnknown)), reinterpret_cast<Slot>(functions)...};
    }
    static void unused() {}
    inline static const auto kSlots =
        slotsOf(unused, count<1>, count<-1>, unused, unused, unused, unused, echo<BSTR>, echo<INT>,
                echo<VARIANT_BOOL>, echo<INT>, echo<VARIANT>, echo<IUnknown*>, echo<IUnknown*>, echo<INT>,
                record<INT, BSTR>, record<INT, IUnknown*>, record<BSTR, VARIANT, INT, IUnknown*>);
    const Slot* vtable = kSlots.data() + 2;
    HRESULT code = S_OK;
    ULONG references = 1;
    std::string behaviour, received;
};

/// An argument whose QueryInterface releases the object that is being called.
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
    /// Calls the member with all outputs, and again with null outputs.
    /// \return the outcome of the first call in words
    std::string call(const std::string& member, WORD flags, Arguments arguments)
    {
        const DISPID id = std::isalpha(member[0]) ? idOf(*info, std::wstring(member.begin(), member.end()))
                                                  : std::stoi(member);
        DISPPARAMS parameters = arguments.parameters();
        const auto invoke = [&](VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
            HRESULT code = 7777; // kept if the member throws
            // A host can set any floating-point environment.
            fesetround(roundingMode);
            feenableexcept(FE_ALL_EXCEPT);
#ifdef __SSE__
            _mm_setcsr(_mm_getcsr() & ~_MM_MASK_DENORM);
#endif
            try {
                code = info->Invoke(&probe, id, flags, &parameters, result, exception, badArgument);
            } catch (const std::runtime_error&) {}
            fesetenv(FE_DFL_ENV);
            return code;
        };
        probe.received.clear();
        VARIANT written = Variant(4711).get();
        EXCEPINFO exception;
        std::memset(&exception, 0x55, sizeof exception);
        UINT badArgument = 77;
        const HRESULT code = invoke(&written, &exception, &badArgument);
        const Variant result = Variant::adopt(written);
        std::string words = code == S_OK ? "" : ' ' + asWord(kel::describe(code));
        if (code == DISP_E_EXCEPTION && !exception.bstrDescription && !exception.pfnDeferredFillIn)
            words += ':' + std::to_string(exception.scode + exception.wCode);
        if (badArgument != 77)
            words += '@' + std::to_string(badArgument);
        const bool isPeer = written.punkVal == peer.get();
        const std::string word = wordOf(written, isPeer ? "peer" : written.punkVal ? "another" : "null");
        words += (word == "i4:4711" ? "" : ' ' + word) + probe.received;
        peer->AddRef();
        EXPECT_EQ(isPeer ? 2U : 1U, peer->Release()) << "only the result may add a reference to the peer";
        EXPECT_EQ(1U, probe.references) << "after the call, Invoke must hold no reference";
        EXPECT_EQ(code, invoke(nullptr, nullptr, nullptr)) << "null outputs must not change the code";
        return words.substr(1);
    }

    Probe probe;
    int roundingMode = FE_TONEAREST;
    const TypeLibraryFile file{stamped(contentOf(QStringLiteral(KEL_TESTS "invoke_library.xml")))};
    const kel::ComPtr<ITypeInfo> info = typeInfo(file.widePath.c_str(), {1, 0, 0, {0, 0, 0, 0, 0, 0, 0, 1}});
    const kel::ComPtr<ITypeInfo> peer = typeInfo(L"" KEL_TYPE_LIBRARY, IID_IXMLDOMNode);
    const kel::ComPtr<IXMLDOMDocument> unrelated = newDocument();
    Variants variants{{{"peer", peer.get()}, {"unrelated", unrelated.get()}}};
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
                EXPECT_EQ(expected, call(member, DISPATCH_METHOD, {{variants.of(given)}}))
                    << words.where << ", member " << member << ", rounding mode " << mode;
            }
        }
    });

    // A text too long for Qt is not a number or a truth value, even if it begins like one.
    for (const UINT length : {(1U << 30) + 1, (1U << 30) + 4, ~0U})
        for (const char* word : {"bstr:7", "bstr:true"}) {
            const VARIANT& given = variants.of(word);
            reinterpret_cast<UINT*>(given.bstrVal)[-1] = length;
            for (const char* member : {"number", "flag"})
                EXPECT_EQ("a_value_has_the_wrong_type@0", call(member, DISPATCH_METHOD, {{given}}))
                    << word << " of length " << length << ", member " << member;
        }
}

TEST_F(Invoke, CallsReturnWhatIsListedAndLeakNothing)
{
    expectNoLeaks([this] {
        forEachRow(KEL_TESTS "invoke_calls.txt", [this](Row words) {
            std::string member, expected;
            int flags = 0;
            words >> member >> flags;
            if (member == ":") {
                probe.code = flags;
                words >> probe.behaviour;
                return;
            }
            Variants own{variants.objects};
            const Arguments arguments = own.argumentsOf(words);
            std::getline(words >> std::ws, expected);
            EXPECT_EQ(expected, call(member, static_cast<WORD>(flags), arguments)) << words.where;
        });
    });
}

TEST_F(Invoke, KeepsTheObjectAliveWhenAnArgumentReleasesItsLastReference)
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
        SCOPED_TRACE("a text of " + std::to_string(text.size()) + " characters");
        EXPECT_EQ(text.size(), reinterpret_cast<UINT*>(made)[-1]) << "the length before the text";
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
