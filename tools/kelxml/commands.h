// The subcommands. Each takes checked arguments and prints its result.

#pragma once

#include "KelXmlLib/kel.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tool
{

/// The command failed. `what()` is one line for the user.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The command line is wrong. `what()` explains the mistake.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Arguments
{
    std::vector<std::string> values;   ///< all words that are not options, in order, as UTF-8
    std::optional<std::string> output; ///< `-o`
    bool isPlain = false;              ///< `--plain`
};

/// Runs one subcommand.
/// \return false if nothing was found or a file is bad
/// \throw UsageError, Failure, kel::Error
using Run = bool(const Arguments& arguments);

/// \throw UsageError unless the word can be the name of an element or an attribute
void requireName(const std::string& word);
/// \throw UsageError unless XML allows all characters of the text
void requireText(const std::string& text);

Run runCheck;
Run runCopy;
Run runTree;
Run runFind;
Run runSet;
Run runUnset;
Run runText;
Run runNew;
Run runWrite;
Run runExport;
Run runCall;

} // namespace tool
