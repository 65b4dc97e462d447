// Reads the fuzzer's bytes twice: once as a whole type library, and once as the body of a type library with a
// correct digest. If a type library is accepted, this target must be able to read all descriptions and call
// all functions.

#include "platform/file_reader.h"
#include "support.h"
#include "support/type_library_walk.h"
#include "support/variant_text.h"

#include <typeinfo>

using namespace kelcom;

namespace
{

/// Calls a function with each of four values, and with every allowed number of arguments. All arguments of a
/// call have the same value, except that arguments for object parameters are null.
void callWithEverything(ITypeInfo& info, const FUNCDESC& function)
{
    // The vtable of `instance`. One function without parameters can fill all slots, because the caller cleans
    // up the arguments.
    static const std::vector<const void*> kSlots = [] {
        HRESULT (*const slot)() = [] { return S_FALSE; };
        std::vector<const void*> slots(2 + kDispatchSlots + kMaxFunctions,
                                       reinterpret_cast<const void*>(slot));
        slots[0] = nullptr; // sanitizers read the offset and type information in front of a vtable
        slots[1] = &typeid(IUnknown);
        return slots;
    }();
    const auto* instance = kSlots.data() + 2;
    for (const char* const word : {"empty", "i8:7", "bstr:-7.5", "error:-2147352572"}) {
        keltest::Variants variants;
        keltest::Arguments arguments;
        for (unsigned place = kelfuzz::argumentsOf(function); place-- > 0;) {
            const VARTYPE type = function.lprgelemdescParam[place].tdesc.vt;
            const bool isObject = type == VT_PTR || type == VT_UNKNOWN || type == VT_DISPATCH;
            arguments.values.push_back(variants.of(isObject ? "dispatch:" : word));
        }
        arguments.names.assign(function.invkind >= INVOKE_PROPERTYPUT ? 1 : 0, DISPID_PROPERTYPUT);
        for (SHORT omitted = 0; omitted <= function.cParamsOpt; ++omitted) {
            DISPPARAMS parameters = arguments.parameters();
            parameters.rgvarg += omitted;
            parameters.cArgs -= static_cast<UINT>(omitted);
            VARIANT result = kel::Variant(1).get();
            const HRESULT code = info.Invoke(&instance, function.memid, static_cast<WORD>(function.invkind),
                                             &parameters, &result, nullptr, nullptr);
            require(FAILED(code) || (code == S_FALSE && result.vt == VT_EMPTY),
                    "a call must fail, or return the S_FALSE of the slot and no result");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const QByteArray& contents : {bytes, keltest::stamped(bytes)})
        // Avoids `LoadTypeLib`, which caches every library forever.
        if (auto description = readTypeLibrary(contents)) {
            const kel::ComPtr<ITypeLib> library(new TypeLibrary(std::move(description)));
            keltest::describe(*library, callWithEverything);
        }
    return 0;
}
