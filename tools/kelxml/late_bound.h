// Helps the subcommand `call` to call members by name. The C++ layer `kel` has no such calls.

#pragma once

#include "KelXmlLib/kel.h"

#include <string>

namespace tool
{

/// Registers the type library that is installed together with the shared library.
/// \throw Failure, kel::Error
void registerTypeLibrary();

/// Whether the member of `object` with this name is a no-op, which accepts calls and does nothing.
/// \param isAssignment true to ask about the setter of a property; false to ask about a getter or a method
bool isNoOp(IDispatch& object, const std::wstring& name, bool isAssignment);

} // namespace tool
