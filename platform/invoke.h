// Calls a member of an object by the member's identifier, through the object's vtable.

#pragma once

#include "platform/description.h"

namespace kelcom
{

/// The pointers through which a call returns its outputs. Each pointer may be null.
struct CallOutputs
{
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* badArgument;
};

/// Implements `ITypeInfo::Invoke`. Sets `*outputs.result` to `VT_EMPTY` just before the member runs. If the
/// call fails before the member runs, `*outputs.result` does not change.
HRESULT invoke(const InterfaceDescription& interface, void* instance, MEMBERID member, WORD flags,
               const DISPPARAMS* parameters, const CallOutputs& outputs);

} // namespace kelcom
