// Converts `kel::SaveOptions` to the options of the serializer.

#pragma once

#include "KelXmlLib/kel/node.h"
#include "serialize/serialize.h"

namespace kel::detail
{

inline kelxml::serialize::Options optionsOf(const SaveOptions& options)
{
    using Order = kelxml::serialize::AttributeOrder;
    return {options.indent, options.attributeOrder == AttributeOrder::byName ? Order::byName : Order::ofQt};
}

} // namespace kel::detail
