// Reads a type library from the bytes of its file.

#pragma once

#include "platform/description.h"

#include <QtCore/QByteArray>
#include <memory>

namespace kelcom
{

/// The text is XML with this very head, the digest in it, and the rest; so one changed byte anywhere is
/// known:
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <library format="1" digest="SHA-256 of all that follows the tag, in lower-case hex">
///       <identity name=… uuid=… version=…/>
///       <external name=… uuid=…/>            an interface that is passed about and not described
///       <enum name=…/>
///       <interface name=… uuid=… base=…>     base: IDispatch, or an interface described before
///         <member name=… id=… kind=…>        kind: method, propget, propput or propputref
///           <param name=… type=… dir=… optional=…/>   dir: in, or for the last one retval
///
/// \return the library; null for anything that is not a valid and consistent one
std::unique_ptr<const LibraryDescription> readTypeLibrary(const QByteArray& contents);

} // namespace kelcom
