// Finds a member of an object by name, and calls this member.

#pragma once

#include "KelComWrapper/variant_owner.h"

#include <string>

/// \return the error code of `GetIDsOfNames` if `GetIDsOfNames` fails, else the code that `Invoke` returns
inline HRESULT callByName(IDispatch& object, std::wstring name, WORD flags, kel::Variant& result,
                          DISPPARAMS parameters = {})
{
    wchar_t* names = name.data();
    DISPID member = DISPID_UNKNOWN;
    const HRESULT found = object.GetIDsOfNames(IID_IUnknown, &names, 1, 0, &member);
    return FAILED(found)
               ? found
               : object.Invoke(member, IID_IUnknown, 0, flags, &parameters, result.put(), nullptr, nullptr);
}
