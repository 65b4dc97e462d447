// Converts the arguments of a call to the types of the parameters, by the rules that docs/late-bound.md
// lists.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/dispatch.h"

namespace kelcom
{

// Each function returns `DISP_E_TYPEMISMATCH` if the value cannot be converted, and `DISP_E_OVERFLOW` if it
// is out of range. Outputs are written on success only.

/// Follows `VT_BYREF` to the value. If the argument refers to a variable that is itself a reference, follows
/// that reference too.
/// \param plain receives a view, which owns nothing and is valid only as long as the value itself
HRESULT dereference(const VARIANT& argument, VARIANT& plain);

/// Rounds to the nearest integer; a half rounds to the even integer.
HRESULT toInteger(const VARIANT& plain, std::int32_t& integer);
HRESULT toBoolean(const VARIANT& plain, VARIANT_BOOL& boolean);
/// \param text receives the argument's own BSTR, or the one in `newText`
/// \param newText receives and owns the new BSTR if the value is not a text
HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& newText);
/// Queries the passed object for the parameter's interface. A null object stays null.
HRESULT toObject(const VARIANT& plain, const GUID& iid, kel::ComPtr<IUnknown>& object);

} // namespace kelcom
