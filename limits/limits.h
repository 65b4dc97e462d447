// What a text may ask of Qt's parser, and what a tree may be. docs/limits.md says why these and not others.

#pragma once

#include <QtCore/QtGlobal>

namespace kelxml::limits
{

/// Elements in content or in an entity's value, parentheses in a content model. The deepest operation on a
/// tree, saving, takes about 1.4 KiB of stack a level: 2.9 MB of the usual 8 MiB.
constexpr int kMaxNesting = 2048;
/// Elements, and other nodes with children, below one another in a tree: what was built can be saved and
/// loaded again.
constexpr int kMaxElementDepth = kMaxNesting;
/// With room below the deepest element for an attribute and its text.
constexpr int kMaxNodeDepth = kMaxElementDepth + 2;

/// The parser compares each declaration with all others: a third of a second for this many with empty values.
constexpr int kMaxEntityDeclarations = 4096;
/// The parser searches each value for a reference to every entity, and moves the rest of the value for each
/// one that it finds. So this bounds the entity declarations and the ampersands in values, times the
/// characters of the names and values: at most four seconds.
constexpr qint64 kMaxEntitySearch = 4'000'000'000;
/// What a text of any size may hold or unfold in entity text before its amplification counts: a few megabytes
/// in the tree.
constexpr qint64 kEntityActivationThreshold = 1'000'000;
/// How much entity text a longer text may unfold, in times of what its sender had to send.
constexpr int kMaxEntityAmplification = 10;
/// What a string of Qt's cannot hold. No text, attribute or entity value gets this long: neither the document
/// nor what is unfolded in it.
constexpr qint64 kTooLongForQt = qint64{1} << 30;

/// The bytes that are taken from a file. One array holds them.
constexpr qint64 kMaxFileBytes = qint64{512} * 1024 * 1024;
/// The bytes that are taken from a device that does not know its size, such as a pipe that never ends.
constexpr qint64 kMaxUnsizedBytes = qint64{64} * 1024 * 1024;

/// What a document went beyond.
enum class Limit {
    None,
    Nesting,
    EntityDeclarations,
    EntitySearch,
    EntityText,
    TextLength,
    FileBytes,
    UnsizedBytes,
    Stack ///< of the calling thread; all others are the same everywhere
};

} // namespace kelxml::limits
