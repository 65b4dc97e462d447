// The one way to Qt's writing of a tree.

#pragma once

class QDomDocument;
class QFile;

namespace kelxml::serialize
{

/// Whether the calling thread's stack has room for saving the document. \throw std::bad_alloc
bool canBeSaved(const QDomDocument& document);

/// Writes the document, indented, in the encoding that it declares, else in UTF-8. The outcome of the writing
/// is not looked at. \param file open for writing. \throw std::bad_alloc, the file cut off
void save(const QDomDocument& document, QFile& file);

} // namespace kelxml::serialize
