// The subcommands. main.cpp checks the options and the number of arguments before it calls a subcommand. Each
// subcommand prints its result.

#pragma once

#include "KelXmlLib/kel.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tool
{

/// Thrown if a subcommand fails. `what()` is a one-line message for the user.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Thrown if the command line is wrong. `what()` explains the mistake to the user.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Arguments
{
    /// The words after the subcommand's name, without the options, in the order of the command line.
    std::vector<std::string> values;
    std::optional<std::string> output; ///< the file name after the option `-o`, if given
    bool isPlain = false;              ///< whether the option `--plain` was given
};

/// The type of the functions that run a subcommand.
/// \return false if the subcommand found nothing, or if a file could not be loaded
/// \throw UsageError, Failure, kel::Error
using Run = bool(const Arguments& arguments);

/// \throw UsageError if the word cannot be the name of an element or an attribute
void requireName(const std::string& word);
/// \throw UsageError if the text has a character that XML does not allow
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
