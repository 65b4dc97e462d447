// The expressions of `call`: a dotted path of members with arguments, optionally with an assignment to its
// last member.
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
    /// For messages: the path up to and including this member, as written. Points into the parsed text, so
    /// the text must outlive it.
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
    /// The value assigned to the last member; empty for a call without assignment.
    std::vector<Argument> assigned;
};

/// \param text must outlive the expression
/// \throw UsageError with the position of the error
Expression parseExpression(std::wstring_view text);

} // namespace tool
