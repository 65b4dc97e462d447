// The expressions of the subcommand `call`. An expression is a path of members with dots between them.
// Members may have arguments. An expression may also assign a value to the last member of the path.
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
    /// The path up to and including this member, as the user wrote the path. Used in messages. Points into
    /// the parsed text, so the text must outlive this `Step`.
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
    /// Contains the value that is assigned to the last member of `path`. Empty if the expression assigns no
    /// value.
    std::vector<Argument> assigned;
};

/// \param text must outlive the returned expression
/// \throw UsageError with the position of the error
Expression parseExpression(std::wstring_view text);

} // namespace tool
