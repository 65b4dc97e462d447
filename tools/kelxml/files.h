// Loads and saves documents, and shows the progress on a terminal. The path "-" means the standard input when
// a document is loaded, and the standard output when a document is saved.

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

/// Prints the message of an exception to the standard error.
void printError(const std::exception& error);

/// Returns the stream for the report of a subcommand that saves a document to `path`. If `path` is "-", the
/// document goes to the standard output, so the report goes to the standard error. For any other path, the
/// report goes to the standard output.
std::ostream& reportStream(const std::string& path);

} // namespace tool
