// What `call` understands: a dotted path of members with arguments, and an assignment to its last member.
//
//   expression = path [ "=" argument ]
//   path       = member { "." member }
//   member     = name [ "(" [ argument { "," argument } ] ")" ]
//   argument   = string | number | "true" | "false" | "null" | path

#pragma once

#include "commands.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tool
{

struct Argument;

/// One member of a path.
struct Step
{
    std::wstring name;
    std::vector<Argument> arguments;
    /// The path up to here as it was written, for messages: a part of the text that was parsed, which must
    /// outlive it.
    std::wstring_view source;
};

using Path = std::vector<Step>;

struct Argument
{
    std::variant<std::wstring, std::int32_t, std::int64_t, double, bool, std::nullptr_t, Path> value;
};

struct Expression
{
    Path path;
    /// The value assigned to the last member; none for a mere call.
    std::vector<Argument> assigned;
};

/// \param text must outlive the expression \throw UsageError with the place of the mistake
Expression parseExpression(std::wstring_view text);

} // namespace tool
