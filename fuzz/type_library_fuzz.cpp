// Any bytes as a type library, as they are and under a digest that fits: refused as the service refuses them,
// or a library all of whose descriptions can be read and whose every function can be called.

#include "KelComWrapper/typelib.h"
#include "platform/type_library_reader.h"
#include "support.h"
#include "support/type_library_walk.h"
#include "support/variant_text.h"

#include <vector>

using namespace kelcom;
using kelfuzz::require;

namespace
{

/// Every slot of the object that is called: the caller clears the stack, so one fits all.
HRESULT answerNothing()
{
    return S_FALSE;
}

void call(ITypeInfo& info, const FUNCDESC& function, std::vector<VARIANT> arguments)
{
    static const std::vector<HRESULT (*)()> kSlots(kDispatchSlots + kMaxFunctions, answerNothing);
    const auto* instance = kSlots.data();
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), &put, static_cast<UINT>(arguments.size()),
                          function.invkind >= INVOKE_PROPERTYPUT ? 1U : 0U};
    VARIANT result = kel::Variant(1).get();
    const HRESULT answer = info.Invoke(&instance, function.memid, static_cast<WORD>(function.invkind),
                                       &parameters, &result, nullptr, nullptr);
    require(FAILED(answer) || (answer == S_FALSE && result.vt == VT_EMPTY));
}

/// With every number of arguments; those that are no objects are made of one value each time.
void callWithEverything(ITypeInfo& info, const FUNCDESC& function)
{
    static keltest::Variants variants;
    static const VARIANT kValues[] = {variants.of("empty"), variants.of("i8:7"), variants.of("bstr:-7.5"),
                                      variants.of("error:-2147352572")};
    static const VARIANT kNoObject = variants.of("dispatch:");
    const unsigned count = kelfuzz::argumentsOf(function);
    for (const VARIANT& value : kValues)
        for (unsigned given = count - static_cast<unsigned>(function.cParamsOpt); given <= count; ++given) {
            std::vector<VARIANT> arguments(given, value);
            for (unsigned place = 0; place < given; ++place) {
                const VARTYPE type = function.lprgelemdescParam[place].tdesc.vt;
                if (type == VT_PTR || type == VT_UNKNOWN || type == VT_DISPATCH)
                    arguments[given - 1 - place] = kNoObject;
            }
            call(info, function, std::move(arguments));
        }
}

void check(const QByteArray& contents)
{
    auto description = readTypeLibrary(contents);
    if (!description) {
        static kelfuzz::MemoryFile file;
        file.write(contents);
        ITypeLib* untouched = nullptr;
        require(KelTypelib::LoadTypeLib(file.path().c_str(), &untouched) == TYPE_E_INVDATAREAD && !untouched);
        return;
    }
    // Not from the service, which keeps every library for good.
    const kel::ComPtr<ITypeLib> library(new TypeLibrary(std::move(description)));
    keltest::describe(*library, require, callWithEverything);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    check(bytes);
    check(keltest::stamped(bytes));
    return 0;
}
