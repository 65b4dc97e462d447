// Reads a type library from the bytes of its file.

#pragma once

#include "platform/description.h"

#include <QtCore/QByteArray>
#include <memory>

namespace kelcom
{

/// The file is XML and begins with exactly this head, whose digest covers the rest. So a change of any byte
/// is detected:
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <library format="1" digest="SHA-256 of everything after the tag, in lower-case hex">
///       <identity name=… uuid=… version=…/>
///       <external name=… uuid=…/>            an interface that is only passed, not described
///       <enum name=…/>
///       <interface name=… uuid=… base=…>     base: IDispatch or an earlier interface
///         <member name=… id=… kind=…>        kind: method, propget, propput or propputref
///           <param name=… type=… dir=… optional=…/>   dir: in, or retval for the last one
///
/// \return the library; null if it is damaged, not valid or not consistent
std::unique_ptr<const LibraryDescription> readTypeLibrary(const QByteArray& contents);

} // namespace kelcom
