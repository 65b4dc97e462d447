// Converts call arguments to the types of parameters, by the published rules.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/dispatch.h"

namespace kelcom
{

// Each function returns `DISP_E_TYPEMISMATCH` for a value that cannot be converted and `DISP_E_OVERFLOW` for
// one that is out of range, and writes its output on success only.

/// Follows `VT_BYREF` to the value, also through a variable that is itself a reference.
/// \param plain a view that owns nothing; valid as long as what `argument` refers to
HRESULT dereference(const VARIANT& argument, VARIANT& plain);

/// Rounds to the nearest integer, halves to the even one.
HRESULT toInteger(const VARIANT& plain, std::int32_t& integer);
HRESULT toBoolean(const VARIANT& plain, VARIANT_BOOL& boolean);
/// \param text the argument's own BSTR, or else the new one
/// \param newText owns the new BSTR
HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& newText);
/// Queries a passed object for the parameter's interface; null stays null.
HRESULT toObject(const VARIANT& plain, const GUID& iid, kel::ComPtr<IUnknown>& object);

} // namespace kelcom
