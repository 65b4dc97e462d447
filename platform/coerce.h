// The published conversions of call arguments to the types that members take.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/dispatch.h"

namespace kelcom
{

// All of them answer `DISP_E_TYPEMISMATCH` for what cannot be converted and `DISP_E_OVERFLOW` for what has no
// room in the wanted type, and write their output on success only.

/// Follows `VT_BYREF` to the value itself, through a variable that holds a reference once more.
/// \param plain a view: it owns nothing, and holds as long as what `argument` refers to
HRESULT dereference(const VARIANT& argument, VARIANT& plain);

/// Fractions are rounded to the nearest integer, halves to the even one.
HRESULT toInteger(const VARIANT& plain, std::int32_t& integer);
HRESULT toBoolean(const VARIANT& plain, VARIANT_BOOL& boolean);
/// \param text the argument's own BSTR where it has one, else what was made
/// \param made owns what had to be made
HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& made);
/// Asks a passed object for the interface that is wanted; null stays null.
HRESULT toObject(const VARIANT& plain, const GUID& iid, kel::ComPtr<IUnknown>& object);

} // namespace kelcom
