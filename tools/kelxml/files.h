// Loads and saves documents, with progress on a terminal. The path "-" means the standard input or output.

#pragma once

#include "KelXmlLib/kel.h"

#include <iosfwd>
#include <string>

namespace tool
{

/// \throw kel::LoadError, Failure
kel::Document load(const std::string& path);

/// \throw kel::SaveError
void save(const kel::Document& document, const std::string& path);

/// Returns `path`, or the path of the standard output if `path` is "-".
std::string outputPath(const std::string& path);

/// Prints the message of an error to the standard error.
void printError(const std::exception& error);

/// The stream for the report of a command that writes a document to `path`. This is the standard output, or
/// the standard error if the document goes to the standard output.
std::ostream& reportStream(const std::string& path);

} // namespace tool
