// A look at a text before Qt's parser sees it.
//
// The parser (`QXmlSimpleReader` of Qt 5.15) recurses on elements and on parentheses in content models,
// splices entity values into its input as often as they are used, and compares every entity declaration with
// all others. A few kilobytes can take all stack, memory or time from the host's process, and none of that
// can be caught once the parser runs.

#pragma once

#include "limits/limits.h"

class QByteArray;
class QString;

namespace kelxml::parsing
{

struct Prescan
{
    /// The first limit that the text goes beyond.
    limits::Limit exceeded;
    /// The deepest nesting that the parser gets to, for `hasRoomToParse`; up to where the prescan stopped.
    int nesting;

    bool isWithin() const { return exceeded == limits::Limit::None; }
};

/// Both follow the parser's own way through the text, not the XML standard's: every entity reference is a
/// splice of characters, wherever the value's markup begins and ends. They stop where the parser is sure to
/// stop, so malformed text is the parser's to refuse, and behind the document element. Time is linear in the
/// length of the text; beside names and values of entities, and one number, nothing is kept.
Prescan prescan(const QString& text);

/// Of the characters that the parser will see, decoded by the same input source.
Prescan prescan(const QByteArray& bytes);

} // namespace kelxml::parsing
