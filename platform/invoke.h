// Calls a member of an object by its identifier, through the object's own vtable.

#pragma once

#include "platform/description.h"

namespace kelcom
{

/// The outputs of a call. Any of them may be null.
struct CallOutputs
{
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* badArgument;
};

/// See `ITypeInfo::Invoke`. Sets the result to `VT_EMPTY` just before the member runs. A call that fails
/// earlier does not change the result.
HRESULT invoke(const InterfaceDescription& interface, void* instance, MEMBERID member, WORD flags,
               const DISPPARAMS* parameters, const CallOutputs& outputs);

} // namespace kelcom
