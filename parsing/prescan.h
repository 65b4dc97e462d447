// Scans a text for attacks before Qt parses it.
//
// A text of a few kilobytes can make the parser (`QXmlSimpleReader` of Qt 5.15) exhaust the host's stack,
// memory or time:
// - The parser recurses into nested elements, and into nested parentheses in content models.
// - At each reference to an entity, the parser splices in the value of the entity: the parser reads the value
//   in place of the reference.
// - For each entity, the parser searches the values of all entities for references to it.
//
// Nothing can stop the parser once it runs.

#pragma once

#include "limits/limits.h"

class QByteArray;
class QString;

namespace kelxml::parsing
{

struct Prescan
{
    /// The first limit that the text exceeds; `None` if the text exceeds no limit.
    limits::Limit exceeded;
    /// The deepest nesting that the parser reaches in the scanned part of the text. Pass it to
    /// `hasRoomToParse`.
    int nesting;

    bool isWithinLimits() const { return exceeded == limits::Limit::None; }
};

/// Scans a text in the same way as the parser reads it, even where the parser differs from the XML standard:
/// an entity's value is spliced in even if the value has a start tag without an end tag, or an end tag
/// without a start tag. The scan takes linear time, and needs memory only for the entities.
///
/// The scan ends after the document element. It ends earlier if the text exceeds a limit, or has an error
/// that the scanner checks for. Every error that the scanner checks for also stops the parser.
Prescan prescan(const QString& text);

/// Scans the bytes of a file. Decodes the bytes with the class that the parser uses, `QXmlInputSource`, so
/// that the scan sees the same characters as the parser.
Prescan prescan(const QByteArray& bytes);

} // namespace kelxml::parsing
