// Support for calls by name, which the C++ layer does not offer.

#pragma once

#include "KelXmlLib/kel.h"

#include <string>

namespace tool
{

/// Registers the type library that is installed next to the library. \throw Failure, kel::Error
void registerTypeLibrary();

/// Whether the member with this name is a no-op: it accepts calls and does nothing.
/// \param isAssignment whether to look for the setter of a property
bool isNoOp(IDispatch& object, const std::wstring& name, bool isAssignment);

} // namespace tool
