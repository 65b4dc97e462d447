// Smart pointers to the descriptions that an ITypeInfo returns: TYPEATTR and FUNCDESC.

#pragma once

#include "KelComWrapper/typeinfo.h"

#include <memory>

namespace kelxml::com
{

/// The deleter of `DescriptionPtr`. Releases a description through `typeInfo`, which must be the `ITypeInfo`
/// that returned the description. Does not own `typeInfo`.
struct ReleaseDescription
{
    void operator()(TYPEATTR* attributes) const { typeInfo->ReleaseTypeAttr(attributes); }
    void operator()(FUNCDESC* function) const { typeInfo->ReleaseFuncDesc(function); }
    ITypeInfo* typeInfo;
};
template <class Description>
using DescriptionPtr = std::unique_ptr<Description, ReleaseDescription>;

} // namespace kelxml::com
