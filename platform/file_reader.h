// Parses the contents of a type library file.

#pragma once

#include "platform/description.h"

#include <QtCore/QByteArray>
#include <memory>

namespace kelcom
{

/// Parses a type library. The file is XML in the format below. The XML declaration and the `<library>` tag
/// must match this format byte for byte, and the digest covers all bytes after the `<library>` tag. Therefore
/// a change of any byte is detected.
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <library format="1" digest="SHA-256 of everything after this tag, in lower-case hex">
///       <identity name=… uuid=… version=…/>
///       <external name=… uuid=…/>            an interface that is used but not described
///       <enum name=…/>
///       <interface name=… uuid=… base=…>     base: IDispatch or an earlier interface
///         <member name=… id=… kind=…>        kind: method, propget, propput or propputref
///           <param name=… type=… dir=… optional=…/>   dir: in; the last param may be retval
///
/// \return the description of the library; null if the file is damaged, invalid or inconsistent
std::unique_ptr<const LibraryDescription> readTypeLibrary(const QByteArray& contents);

} // namespace kelcom
