// Calls Qt to write a document. No other code of the library may call `QDomDocument::save`.

#pragma once

class QDomDocument;
class QFile;

namespace kelxml::serialize
{

/// Whether the calling thread's stack has room to save the document. \throw std::bad_alloc
bool canBeSaved(const QDomDocument& document);

/// Writes the document, indented, in the encoding that it declares, else in UTF-8. Ignores write errors.
/// \param file open for writing
/// \throw std::bad_alloc, which leaves the file truncated
void save(const QDomDocument& document, QFile& file);

} // namespace kelxml::serialize
