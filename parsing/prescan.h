// Scans a text for attacks before Qt parses it.
//
// The parser (`QXmlSimpleReader` of Qt 5.15) recurses on elements and on parentheses in content models. At
// each reference to an entity, it splices the entity's value into its input. It compares every entity
// declaration with all others. So a text of a few kilobytes can exhaust the host's stack, memory or time, and
// nothing can stop the parser once it runs.

#pragma once

#include "limits/limits.h"

class QByteArray;
class QString;

namespace kelxml::parsing
{

struct Prescan
{
    /// The first limit that the text exceeds.
    limits::Limit exceeded;
    /// The deepest nesting that the parser reaches in the scanned part of the text. Pass it to
    /// `hasRoomToParse`.
    int nesting;

    bool isWithinLimits() const { return exceeded == limits::Limit::None; }
};

/// Scans a text. Follows the parser, not the XML standard: it splices in the value of an entity even if the
/// value has a start tag without its end tag, or the reverse. Stops after the document element. Stops earlier
/// if the text exceeds a limit or has an error at which the parser stops too. Takes linear time. Needs memory
/// only for the entities.
Prescan prescan(const QString& text);

/// Scans the bytes of a file. Decodes them with the parser's own input source, so that it sees the same
/// characters.
Prescan prescan(const QByteArray& bytes);

} // namespace kelxml::parsing
