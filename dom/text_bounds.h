// What a text may ask of Qt's parser, and the look at a text before that parser sees it.
//
// Qt's parser recurses on elements and on parentheses in content models, splices entity values into its input
// as often as they are used, and compares every entity declaration with all others. A few kilobytes can take
// all stack, memory or time from the host's process, and none of that can be caught once the parser runs.

#pragma once

#include <QtCore/QtGlobal>

class QIODevice;
class QString;

namespace kelxml::bounds
{

/// The deepest operation on a tree, saving, takes about 1.4 KiB of stack a level: 2.9 MB of the usual 8 MiB.
constexpr int kMaxNesting = 2048;
/// The parser's work grows with the square of the number of declarations: a third of a second at this bound.
constexpr int kMaxEntityDeclarations = 4096;
/// What a text of any size may hold or unfold in entity text: a few megabytes in the tree.
constexpr qint64 kMaxEntityText = 1'000'000;
/// A large text may unfold more, in proportion to what its sender had to send.
constexpr int kEntityTextPerLength = 10;
/// How many bytes are taken from a device that does not know its size, such as a pipe that never ends.
constexpr qint64 kMaxUnsizedLength = qint64{256} * 1024 * 1024;
/// And from one that does, or says so: one array holds them, and its size is an int.
constexpr qint64 kMaxLength = qint64{1024} * 1024 * 1024;

struct Look
{
    /// Nothing in the text goes beyond the bounds.
    bool within;
    /// The deepest nesting that the parser gets to, for `hasRoomToParse`; up to where the look stopped.
    int nesting;
};

/// Both follow the parser's own way through the text, not the XML standard's: every entity reference is a
/// splice of characters, wherever the value's markup begins and ends. They stop where the parser is sure to
/// stop, so malformed text is the parser's to refuse. Time is linear in the length of the text; beside names
/// and values of entities nothing is kept.
Look lookAt(const QString& text);

/// Sees the characters that the parser will see, decoded by the same input source. The device is open, can be
/// read twice (see `ReplayDevice`), and is left where it was.
Look lookAt(QIODevice& device);

} // namespace kelxml::bounds
