// Documents from files and into files. "-" is the standard input and the standard output.

#pragma once

#include "host.h"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

namespace host
{

/// Does its work with the file at `place`. \return whether the library could
using FileWork = std::function<bool(const std::wstring& place)>;

/// Loads a document by `load`. \return the bytes read \throw Failure that says what is wrong with the file
std::uintmax_t loadBy(const Library& library, const std::wstring& path, const FileWork& load);

/// Saves a document by `save`. A file comes to be, or changes, only when everything has gone well: what is
/// saved is held in memory first, read back, written beside the file and put into its place; but a file with
/// several names is written in place. \return the
/// bytes written \throw Failure that says what is wrong
std::uintmax_t saveBy(const Library& library, const std::wstring& path, const FileWork& save);

/// \return whether the file was read and is a document within the library's limits
bool loadFrom(IXMLDOMDocument& document, const std::wstring& place);

/// \param size receives the bytes read, when it is not null
kel::ComPtr<IXMLDOMDocument> loadDocument(const Library& library, const std::wstring& path,
                                          std::uintmax_t* size = nullptr);
std::uintmax_t saveDocument(const Library& library, IXMLDOMDocument& document, const std::wstring& path);

/// Where a command that writes to `path` can report: the standard output, unless the document goes there.
std::ostream& reportBeside(const std::wstring& path);

} // namespace host
