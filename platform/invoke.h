// Calls a member of an object by its identifier, through the object's own vtable.

#pragma once

#include "platform/description.h"

namespace kelcom
{

/// Where a call leaves what it has to tell; any of them may be null.
struct CallOutputs
{
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* badArgument;
};

/// See `ITypeInfo::Invoke`. The result is made `VT_EMPTY` just before the member runs and left alone by a
/// call that does not get so far.
HRESULT invoke(const InterfaceDescription& interface, void* instance, MEMBERID member, WORD flags,
               const DISPPARAMS* parameters, const CallOutputs& outputs);

} // namespace kelcom
