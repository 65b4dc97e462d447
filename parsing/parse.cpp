// Scans the text, checks the free stack, removes the earlier content of the document and calls Qt's parser.

#include "parsing/parse.h"

#include "files/read.h"
#include "limits/stack_room.h"
#include "lists/live_list.h"
#include "parsing/prescan.h"

#include <QtCore/QBuffer>
#include <QtXml/QDomDocument>

namespace kelxml::parsing
{

namespace
{

/// Removes the top-level nodes one by one, because `removeChild` clears the sibling links of the removed
/// node. `QDomDocument::setContent` would free all top-level nodes at once, and a node that the host still
/// holds would keep links to its freed siblings.
void removeContent(QDomDocument& document)
{
    for (QDomNode node = document.firstChild(); !node.isNull(); node = document.firstChild())
        document.removeChild(node);
}

/// \param content a `QString` or a pointer to a `QIODevice`
template <class Content>
ParseResult parseWithin(const Prescan& scan, QDomDocument& document, Content&& content)
{
    if (!scan.isWithinLimits())
        return {ParseFailure::BeyondLimit, scan.exceeded};
    if (!limits::hasRoomToParse(scan.nesting))
        return {ParseFailure::BeyondLimit, limits::Limit::Stack};
    lists::invalidateContent(document);
    removeContent(document);
    ParseResult result;
    if (!document.setContent(content, &result.reason, &result.line, &result.column))
        result.failure = ParseFailure::NotWellFormed;
    return result;
}

ParseResult parseContents(QDomDocument& document, files::Contents&& contents)
{
    if (!contents.error.isNull())
        return {ParseFailure::Unreadable, limits::Limit::None, contents.error};
    if (contents.exceeded != limits::Limit::None)
        return {ParseFailure::BeyondLimit, contents.exceeded};
    QBuffer buffer(&contents.bytes);
    buffer.open(QIODevice::ReadOnly);
    ParseResult result = parseWithin(prescan(contents.bytes), document, &buffer);
    if (contents.bytes.isEmpty())
        result.failure = ParseFailure::Empty;
    return result;
}

} // namespace

ParseResult parseText(QDomDocument& document, const QString& text)
{
    if (text.isEmpty())
        return {ParseFailure::Empty};
    return parseWithin(prescan(text), document, text);
}

ParseResult parseFile(QDomDocument& document, const files::Path& path)
{
    return parseContents(document, files::read(path));
}

ParseResult parseFile(QDomDocument& document, const std::string& path)
{
    return parseContents(document, files::read(path));
}

} // namespace kelxml::parsing
