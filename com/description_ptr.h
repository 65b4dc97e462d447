// Owners of the descriptions that a type information returns.

#pragma once

#include "KelComWrapper/typeinfo.h"

#include <memory>

namespace kelxml::com
{

/// Releases a description through the type information that returned it.
struct ReleaseDescription
{
    void operator()(TYPEATTR* attributes) const { typeInfo->ReleaseTypeAttr(attributes); }
    void operator()(FUNCDESC* function) const { typeInfo->ReleaseFuncDesc(function); }
    ITypeInfo* typeInfo;
};
template <class Description>
using DescriptionPtr = std::unique_ptr<Description, ReleaseDescription>;

} // namespace kelxml::com
