// Scans a text for attacks before Qt parses it.
//
// The parser (`QXmlSimpleReader` of Qt 5.15) recurses on elements and on parentheses in content models,
// splices an entity's value into its input each time it is used, and compares every entity declaration with
// all others. A few kilobytes can exhaust the stack, memory or time of the host, and nothing can stop the
// parser once it runs.

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
    /// The deepest nesting that the parser reaches before the point where the prescan stopped. Input for
    /// `hasRoomToParse`.
    int nesting;

    bool isWithinLimits() const { return exceeded == limits::Limit::None; }
};

/// Follows the parser, not the XML standard: every entity reference splices characters, even if the value's
/// markup is not balanced. Stops after the document element, and wherever the parser is sure to stop; the
/// parser then refuses the malformed text itself. Takes linear time, and memory only for the entities.
Prescan prescan(const QString& text);

/// The same for the characters that the parser will see, decoded by the same input source.
Prescan prescan(const QByteArray& bytes);

} // namespace kelxml::parsing
