// Parses the contents of a type library file.

#pragma once

#include "platform/description.h"

#include <QtCore/QByteArray>
#include <memory>

namespace kelcom
{

/// Parses a type library. The file is XML of the form below. The declaration and the `<library>` tag must
/// have exactly this form, and the digest covers everything after them. So a change of any byte is detected.
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <library format="1" digest="SHA-256 of everything after the tag, in lower-case hex">
///       <identity name=… uuid=… version=…/>
///       <external name=… uuid=…/>            an interface that is used but not described
///       <enum name=…/>
///       <interface name=… uuid=… base=…>     base: IDispatch or an earlier interface
///         <member name=… id=… kind=…>        kind: method, propget, propput or propputref
///           <param name=… type=… dir=… optional=…/>   dir: in, or retval only for the last param
///
/// \return the library; null if the file is damaged, invalid or inconsistent
std::unique_ptr<const LibraryDescription> readTypeLibrary(const QByteArray& contents);

} // namespace kelcom
