// Calls by identifier on objects that earlier calls returned: mostly with the expected arguments, sometimes
// of any type, count and name. Arguments must not change, and a failure must not return anything.

#include "KelComWrapper/typelib.h"
#include "support.h"
#include "support/objects.h"
#include "support/variant_text.h"

using namespace kelfuzz;

namespace
{

using Objects = std::vector<ComPtr<IDispatch>>;

constexpr std::size_t kMostObjects = 64;
constexpr std::size_t kMostArguments = 5;
constexpr DISPID kSave = 64;

/// Most arguments are from this list; the others are from the tests' table.
constexpr const char* kUsual[] = {"bstr:", "dispatch:peer", "dispatch:peer", "i4:0",
                                  "i4:1",  "i4:2",          "empty",         "error:-2147352572"};
constexpr const wchar_t* kTexts[] = {
    L"",     L"a",     L"x",    L"p:x",  L"2",     L"true",           L"1e999", L"<a x='1'>t<b/></a>",
    L"<bad", L"index", L"item", L"SAVE", L"child", L"\xd800\x110000", nullptr};
constexpr DISPID kNames[] = {DISPID_PROPERTYPUT, 0, 1, 2, 7, 8, -1, INT32_MIN};

/// \param isPath whether the argument names a file to write
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
    VARIANT& value = variants.values.back(); // the value that is pointed to
    if (value.vt == VT_BSTR)
        value.bstrVal = variants.texts.emplace_back(isPath ? L"/dev/null" : choices.of(kTexts)).get();
    return given;
}

/// Calls a member, mostly with the expected arguments.
void makeCall(IDispatch& object, Choices& choices, Objects& objects)
{
    ComPtr<ITypeInfo> info;
    TYPEATTR* attributes = nullptr;
    FUNCDESC* function = nullptr;
    require(object.GetTypeInfo(0, 0, info.put()) == S_OK && info->GetTypeAttr(&attributes) == S_OK);
    require(info->GetFuncDesc(choices.below(attributes->cFuncs), &function) == S_OK);
    const DISPID member = choices.oneIn(16) ? choices.of(kNames) : function->memid;
    const auto flags = static_cast<WORD>(choices.oneIn(16) ? choices.below(20) : unsigned(function->invkind));
    keltest::Variants variants;
    keltest::Arguments arguments;
    const unsigned count = choices.oneIn(16) ? choices.below(kMostArguments) : argumentsOf(*function);
    while (arguments.values.size() < count)
        arguments.values.push_back(argument(choices, variants, objects, member == kSave));
    if (choices.oneIn(16))
        for (auto left = choices.below(kMostArguments); left > 0; --left)
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
    const HRESULT answer = object.Invoke(member, IID_IUnknown, 0, flags, &parameters,
                                         isResultWanted ? result.put() : nullptr, &exception, &badArgument);

    require(before.empty() ||
            std::memcmp(before.data(), arguments.values.data(), before.size() * sizeof(VARIANT)) == 0);
    require(badArgument == UINT_MAX || (FAILED(answer) && badArgument < before.size()));
    require(FAILED(exception.scode) == (answer == DISP_E_EXCEPTION));
    const VARTYPE type = result.type();
    require(type == VT_EMPTY || (SUCCEEDED(answer) && (type == VT_NULL || type == VT_BOOL || type == VT_I4 ||
                                                       type == VT_DISPATCH || type == VT_BSTR)));
    if (type == VT_DISPATCH && result.object())
        objects.push_back(result.object());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const HRESULT registered = KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY);
    require(registered == S_OK);
    Choices choices(data, size);
    Objects objects;
    for (const auto& document : {newDocument(), newDocument()}) {
        require(document->loadXML(Bstr(L"<r x='1' p:y='2'>t<a/><!--c--></r>").get(), nullptr) == S_OK);
        objects.emplace_back(document.get());
    }
    const auto release = [&] { objects.erase(objects.begin() + choices.below(objects.size())); };
    // The rest of the bytes is for the end.
    while (choices.remaining_bytes() > size / 8) {
        const ComPtr<IDispatch> object = choices.of(objects);
        makeCall(*object, choices, objects);
        if (objects.size() > kMostObjects || (objects.size() > 2 && choices.oneIn(8)))
            release();
    }
    while (!objects.empty())
        release();
    return 0;
}
