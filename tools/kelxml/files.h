// Loads and saves documents, with progress on a terminal. "-" is the standard input or output.

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

/// The path that the library must open to write to `path`.
std::string outputPath(const std::string& path);

/// Prints the reason why a file could not be read; does not exit.
void printError(const std::exception& error);

/// Where a command that writes to `path` prints its report: the standard output, unless the document goes
/// there.
std::ostream& reportStream(const std::string& path);

} // namespace tool
