// The subcommands. Each gets the loaded library and checked arguments, prints its result and throws a
// `Failure` when the work cannot be done.

#pragma once

#include "host.h"

#include <optional>
#include <string>
#include <vector>

namespace host
{

struct Arguments
{
    /// What stands in the command line beside the options, in its order.
    std::vector<std::wstring> values;
    /// `-o`
    std::optional<std::wstring> output;
    /// `--plain`
    bool isPlain = false;
};

void runCopy(const Library& library, const Arguments& arguments);
void runTree(const Library& library, const Arguments& arguments);
void runFind(const Library& library, const Arguments& arguments);
void runSet(const Library& library, const Arguments& arguments);
void runText(const Library& library, const Arguments& arguments);
void runNew(const Library& library, const Arguments& arguments);
void runWrite(const Library& library, const Arguments& arguments);
void runExport(const Library& library, const Arguments& arguments);
void runCall(const Library& library, const Arguments& arguments);

} // namespace host
