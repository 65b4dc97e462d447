// Calls members by identifier, on two documents and on objects that earlier calls returned. Most calls have
// the right number of arguments with the right names. A few calls have a random number of arguments or random
// names. No call may change its arguments, and no failed call may return a result.

#include "KelComWrapper/typelib.h"
#include "support.h"
#include "support/objects.h"
#include "support/variant_text.h"

using namespace kelfuzz;

namespace
{

using Objects = std::vector<ComPtr<IDispatch>>;

constexpr std::size_t kMaxObjects = 64, kMaxArguments = 5;
constexpr DISPID kSave = 64;

/// Two thirds of the arguments come from this list. The other arguments come from invoke_coercions.txt.
constexpr const char* kUsual[] = {"bstr:", "dispatch:peer", "dispatch:peer", "i4:0",
                                  "i4:1",  "i4:2",          "empty",         "error:-2147352572"};
constexpr const wchar_t* kTexts[] = {
    L"",     L"a",     L"x",    L"p:x",  L"2",     L"true",           L"1e999", L"<a x='1'>t<b/></a>",
    L"<bad", L"index", L"item", L"SAVE", L"child", L"\xd800\x110000", nullptr};
constexpr DISPID kNames[] = {DISPID_PROPERTYPUT, 0, 1, 2, 7, 8, -1, INT32_MIN};

/// \param isPath if true, the call writes to a file, so a text argument becomes the path /dev/null
VARIANT argument(Choices& choices, keltest::Variants& variants, const Objects& objects, bool isPath)
{
    static const std::vector<std::string> kListed = [] {
        std::vector<std::string> words;
        keltest::forEachRow(KEL_TESTS "invoke_coercions.txt",
                            [&](keltest::Row line) { line >> words.emplace_back(); });
        return words;
    }();
    variants.objects["peer"] = choices.oneIn(16) ? nullptr : choices.of(objects).get();
    const VARIANT& given = variants.of(choices.oneIn(3) ? choices.of(kListed) : choices.of(kUsual));
    VARIANT& value = variants.values.back(); // `given`, or the VARIANT that `given` refers to
    if (value.vt == VT_BSTR)
        value.bstrVal = variants.texts.emplace_back(isPath ? L"/dev/null" : choices.of(kTexts)).get();
    return given;
}

void makeCall(IDispatch& object, Choices& choices, Objects& objects)
{
    ComPtr<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    FUNCDESC* function = nullptr;
    requireOk(object.GetTypeInfo(0, 0, info.put()), "GetTypeInfo");
    requireOk(info->GetTypeAttr(&attributes), "GetTypeAttr");
    requireOk(info->GetFuncDesc(choices.below(attributes->cFuncs), &function), "GetFuncDesc");
    const DISPID member = choices.oneIn(16) ? choices.of(kNames) : function->memid;
    const auto flags = static_cast<WORD>(choices.oneIn(16) ? choices.below(20) : unsigned(function->invkind));
    keltest::Variants variants;
    keltest::Arguments arguments;
    const unsigned count = choices.oneIn(16) ? choices.below(kMaxArguments) : argumentsOf(*function);
    while (arguments.values.size() < count)
        arguments.values.push_back(argument(choices, variants, objects, member == kSave));
    if (choices.oneIn(16))
        for (auto left = choices.below(kMaxArguments); left > 0; --left)
            arguments.names.push_back(choices.of(kNames));
    else if (flags >= DISPATCH_PROPERTYPUT)
        arguments.names.push_back(DISPID_PROPERTYPUT);

    const std::vector<VARIANT> before = arguments.values;
    DISPPARAMS parameters = arguments.parameters();
    if (choices.oneIn(64))
        parameters.rgvarg = nullptr;
    kel::Variant result;
    EXCEPINFO exception{};
    UINT badArgument = UINT_MAX;
    const bool isResultWanted = !choices.oneIn(4);
    const HRESULT code = object.Invoke(member, IID_IUnknown, 0, flags, &parameters,
                                       isResultWanted ? result.put() : nullptr, &exception, &badArgument);

    const VARTYPE type = result.type();
    const QList<qint64> values{member, code, badArgument, exception.scode, type};
    const auto expect = [&](bool holds, const std::string& rule, Place at = Place::here()) {
        if (!holds)
            fail(rule + "; member, code, bad argument, exception, type: " + shown(values), at);
    };
    expect(before.empty() ||
               std::memcmp(before.data(), arguments.values.data(), before.size() * sizeof(VARIANT)) == 0,
           "a call does not change its arguments");
    expect(badArgument == UINT_MAX || FAILED(code), "only a failed call reports a bad argument");
    expect(badArgument == UINT_MAX || badArgument < before.size(), "the index of a bad argument is in range");
    expect(FAILED(exception.scode) == (code == DISP_E_EXCEPTION), "scode says whether a member failed");
    expect(type == VT_EMPTY || SUCCEEDED(code), "a failed call returns no result");
    constexpr VARTYPE kTypes[] = {VT_EMPTY, VT_NULL, VT_BOOL, VT_I4, VT_DISPATCH, VT_BSTR};
    expect(std::count(std::begin(kTypes), std::end(kTypes), type) == 1, "a result has a documented type");
    if (type == VT_DISPATCH && result.object())
        objects.push_back(result.object());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const HRESULT registered = KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY);
    requireOk(registered, "RegisterTypeLib");
    Choices choices(data, size);
    Objects objects;
    for (const auto& document : {newDocument(), newDocument()}) {
        const Bstr xml(L"<r x='1' p:y='2'>t<a/><!--c--></r>");
        requireOk(document->loadXML(xml.get(), nullptr), "loadXML");
        objects.emplace_back(document.get());
    }
    const auto release = [&] { objects.erase(objects.begin() + choices.below(objects.size())); };
    // The last eighth of the bytes chooses the order in which the objects that remain are released.
    while (choices.remaining_bytes() > size / 8) {
        const ComPtr<IDispatch> object = choices.of(objects);
        makeCall(*object, choices, objects);
        if (objects.size() > kMaxObjects || (objects.size() > 2 && choices.oneIn(8)))
            release();
    }
    while (!objects.empty())
        release();
    return 0;
}
