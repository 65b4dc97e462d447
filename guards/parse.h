// The one way to Qt's parser: `QDomDocument::setContent` is called nowhere else.

#pragma once

class QDomDocument;
class QFile;
class QString;

namespace kelxml::guards
{

/// Replaces the content of `document` by what the text holds. A text that goes beyond the limits, or for
/// which the thread's stack has no room, is refused before Qt sees it, and the earlier content stays. \return
/// false when it was refused, or is not well-formed; then the document holds what was read up to the fault
bool parse(QDomDocument& document, const QString& text);

/// As above. What was looked at is what is parsed, even if the file changes meanwhile or is a pipe.
/// \param file open for reading; read once, up to the bound, and refused beyond it
bool parse(QDomDocument& document, QFile& file);

} // namespace kelxml::guards
