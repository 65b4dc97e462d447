// Lets Qt write a tree. No other code does.

#pragma once

class QDomDocument;
class QFile;

namespace kelxml::serialize
{

/// Whether the calling thread's stack has room to save the document. \throw std::bad_alloc
bool canBeSaved(const QDomDocument& document);

/// Writes the document, indented, in the encoding it declares, or in UTF-8. Write errors are ignored.
/// \param file open for writing
/// \throw std::bad_alloc, which leaves the file truncated
void save(const QDomDocument& document, QFile& file);

} // namespace kelxml::serialize
