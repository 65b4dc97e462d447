// Converts the arguments of a call to the types of the parameters. docs/late-bound.md lists the rules.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/dispatch.h"

namespace kelcom
{

// Each function returns `DISP_E_TYPEMISMATCH` for a value that it cannot convert, and `DISP_E_OVERFLOW` for a
// number that is out of range. A function that fails does not write its outputs, except that `toText` sets
// both outputs to null when it returns `E_OUTOFMEMORY`.

/// Reads the value of an argument, which may be a reference (`VT_BYREF`). If the argument refers to a
/// VARIANT, and this VARIANT is a reference too, follows both references.
/// \param plain receives a copy of the value. The copy owns nothing, and is valid only as long as the
///        original value
HRESULT dereference(const VARIANT& argument, VARIANT& plain);

/// Rounds to the nearest integer. A number halfway between two integers becomes the even integer.
HRESULT toInteger(const VARIANT& plain, std::int32_t& integer);
HRESULT toBoolean(const VARIANT& plain, VARIANT_BOOL& boolean);
/// \param text receives the BSTR in `plain` if `plain` is a text, otherwise the BSTR in `newText`
/// \param newText receives and owns a new BSTR if `plain` is not a text
HRESULT toText(const VARIANT& plain, BSTR& text, kel::Bstr& newText);
/// Queries the object in `plain` for the interface `iid`. If `plain` is a null object, sets `object` to null.
HRESULT toObject(const VARIANT& plain, const GUID& iid, kel::ComPtr<IUnknown>& object);

} // namespace kelcom
