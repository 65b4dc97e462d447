// Calls by identifier of the objects that such calls give out: mostly what a member asks for, with arguments
// of any type, count and name. Arguments stay as they were given, and a failure gives out nothing.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/convenience.h"
#include "support.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace kelfuzz;
using kel::Bstr;
using kel::ComPtr;

namespace
{

using Objects = std::vector<ComPtr<IDispatch>>;

constexpr std::size_t kMostObjects = 64;
constexpr std::size_t kMostArguments = 5;
constexpr DISPID kSave = 64;
constexpr VARTYPE kUntouchedType = 0x5555;
constexpr UINT kUntouched = 0x55555555;

// clang-format off
// What is more often right stands there more often.
constexpr VARTYPE kTypes[] = {
    VT_BSTR, VT_BSTR, VT_BSTR, VT_BSTR, VT_DISPATCH, VT_DISPATCH, VT_DISPATCH, VT_DISPATCH, VT_I4, VT_I4,
    VT_EMPTY, VT_NULL, VT_I1, VT_UI1, VT_I2, VT_UI2, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_BOOL, VT_R4,
    VT_R8, VT_DATE, VT_CY, VT_ERROR, VT_ERROR, VT_UNKNOWN, VT_DECIMAL, VT_VARIANT, VT_VOID, VT_PTR, VT_ARRAY,
    0x1003, 0x2008, 0x7fff, 0x8000,
};
/// The last two rows are one half, 1e10, infinity and no number, in single and in double precision.
constexpr std::int64_t kNumbers[] = {
    0, 1, 2, 3, -1, DISP_E_PARAMNOTFOUND, INT32_MAX, INT32_MIN, INT64_MAX, INT64_MIN,
    0x3f000000, 0x501502f9, 0x7f800000, 0x7fc00000,
    0x3fe0000000000000, 0x4202a05f20000000, 0x7ff0000000000000, 0x7ff8000000000000,
};
// clang-format on
constexpr const wchar_t* kTexts[] = {
    L"",     L"a",     L"x",    L"p:x",  L"2",     L"true",          L"1e999", L"<a x='1'>t<b/></a>",
    L"<bad", L"index", L"item", L"SAVE", L"child", L"\xd800\x110000"};
constexpr DISPID kNames[] = {DISPID_PROPERTYPUT, 0, 1, 2, 7, 8, -1, INT32_MIN};

/// An argument of a call. What it points to, at once or through a reference, stays where it is.
class Argument
{
public:
    /// \param isPath whether a text in it names a file that is written
    void choose(Choices& choices, const Objects& objects, bool isPath)
    {
        VARIANT& value = m_chain[0];
        value.vt = choices.of(kTypes);
        value.llVal = choices.of(kNumbers);
        if (value.vt == VT_BSTR) {
            m_text = Bstr(isPath ? L"/dev/null" : choices.of(kTexts));
            value.bstrVal = choices.oneIn(16) ? nullptr : m_text.get();
        } else if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) {
            value.pdispVal = choices.oneIn(16) ? nullptr : choices.of(objects).get();
        }
        m_chain[1].vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
        m_chain[1].byref = choices.oneIn(16) ? nullptr : &value.llVal;
        m_chain[2].vt = VT_BYREF | VT_VARIANT;
        m_chain[2].pvarVal = &m_chain[choices.below(2)];
    }
    const VARIANT& given(Choices& choices) const
    {
        return choices.oneIn(4) ? choices.of(m_chain) : m_chain[0];
    }

private:
    Bstr m_text;
    std::array<VARIANT, 3> m_chain{}; ///< a value, a reference to it, a reference to one of the two
};

/// What a member is called with: what it asks for, now and then something else.
struct Call
{
    Call(const FUNCDESC& function, Choices& choices, const Objects& objects)
        : member(choices.oneIn(16) ? choices.of(kNames) : function.memid),
          flags(static_cast<WORD>(choices.oneIn(16) ? choices.below(20) : unsigned(function.invkind)))
    {
        const unsigned count = choices.oneIn(16) ? choices.below(kMostArguments) : argumentsOf(function);
        for (std::size_t index = 0; index < count; ++index) {
            arguments[index].choose(choices, objects, member == kSave);
            values.push_back(arguments[index].given(choices));
        }
        if (flags >= DISPATCH_PROPERTYPUT)
            names.push_back(DISPID_PROPERTYPUT);
        if (choices.oneIn(16)) {
            names.resize(choices.below(kMostArguments));
            for (DISPID& name : names)
                name = choices.of(kNames);
        }
    }

    DISPID member;
    WORD flags;
    std::array<Argument, kMostArguments> arguments;
    std::vector<VARIANT> values;
    std::vector<DISPID> names;
};

/// Keeps an object that a call gave out and frees a text.
void take(const VARIANT& result, Objects& objects)
{
    if (result.vt == VT_BSTR)
        SysFreeString(result.bstrVal);
    else if (result.vt == VT_DISPATCH && result.pdispVal)
        objects.push_back(ComPtr<IDispatch>::adopt(result.pdispVal));
    else
        require(result.vt == VT_EMPTY || result.vt == VT_NULL || result.vt == VT_BOOL || result.vt == VT_I4 ||
                result.vt == VT_DISPATCH);
}

void makeCall(IDispatch& object, Choices& choices, Objects& objects)
{
    ComPtr<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    FUNCDESC* function = nullptr;
    require(object.GetTypeInfo(0, 0, info.put()) == S_OK && info->GetTypeAttr(&attributes) == S_OK);
    require(info->GetFuncDesc(choices.below(attributes->cFuncs), &function) == S_OK);
    Call call(*function, choices, objects);
    const std::vector<VARIANT> before = call.values;
    const auto count = static_cast<UINT>(before.size());
    DISPPARAMS parameters{choices.oneIn(64) ? nullptr : call.values.data(), call.names.data(), count,
                          static_cast<UINT>(call.names.size())};
    VARIANT result{};
    result.vt = kUntouchedType;
    EXCEPINFO exception{};
    UINT badArgument = kUntouched;
    const bool isResultWanted = !choices.oneIn(4);
    const bool areDetailsWanted = choices.oneIn(2);
    const HRESULT answer = object.Invoke(
        call.member, IID_IUnknown, 0, call.flags, &parameters, isResultWanted ? &result : nullptr,
        areDetailsWanted ? &exception : nullptr, areDetailsWanted ? &badArgument : nullptr);

    const auto isUntouched = [](const VARIANT& one, const VARIANT& other) {
        return std::memcmp(&one, &other, sizeof(VARIANT)) == 0;
    };
    require(std::equal(before.begin(), before.end(), call.values.begin(), isUntouched));
    require(badArgument == kUntouched || (FAILED(answer) && badArgument < count));
    require(!areDetailsWanted || FAILED(exception.scode) == (answer == DISP_E_EXCEPTION));
    if (FAILED(answer) || !isResultWanted)
        require(result.vt == kUntouchedType || result.vt == VT_EMPTY);
    else
        take(result, objects);
}

ComPtr<IDispatch> newDocument()
{
    const auto document = kel::newDocument();
    require(document->loadXML(Bstr(L"<r x='1' p:y='2'>t<a/><!--c--></r>").get(), nullptr) == S_OK);
    return ComPtr<IDispatch>(document.get());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    require(KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY) == S_OK);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    Objects objects{newDocument(), newDocument()};
    const auto release = [&] { objects.erase(objects.begin() + choices.below(objects.size())); };
    // The rest of the bytes is for the end.
    while (choices.left() > size / 8) {
        const ComPtr<IDispatch> object = choices.of(objects);
        makeCall(*object, choices, objects);
        if (objects.size() > kMostObjects || (objects.size() > 2 && choices.oneIn(8)))
            release();
    }
    while (!objects.empty())
        release();
    return 0;
}
