// Calls Qt to write a document. No other code of the library may call `QDomDocument::save`.

#pragma once

class QDomDocument;
class QFile;

namespace kelxml::serialize
{

/// Whether the calling thread's stack has enough room to save `document`. \throw std::bad_alloc
bool canBeSaved(const QDomDocument& document);

/// Writes `document` to `file`, indented, in the encoding that the document declares. Writes UTF-8 if the
/// document declares no encoding or an encoding that Qt does not know. Ignores write errors.
/// \param file must be open for writing
/// \throw std::bad_alloc. In this case, `file` contains only the beginning of the document, or nothing
void save(const QDomDocument& document, QFile& file);

} // namespace kelxml::serialize
