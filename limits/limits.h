// The limits of texts, files and trees. docs/limits.md explains the choice.

#pragma once

#include <QtCore/QtGlobal>

namespace kelxml::limits
{

/// Elements in content or in an entity's value, parentheses in a content model. The deepest operation on a
/// tree, saving, takes about 1.4 KiB of stack a level: 2.9 MB of the usual 8 MiB.
constexpr int kMaxNesting = 2048;
/// Levels of elements, and of other nodes with children, in a tree. A tree that was built can be saved and
/// loaded again.
constexpr int kMaxElementDepth = kMaxNesting;
/// Levels of nodes: an attribute and its text may be below the deepest element.
constexpr int kMaxNodeDepth = kMaxElementDepth + 2;

/// The parser compares each declaration with all others. This many, with empty values, take a third of a
/// second.
constexpr int kMaxEntityDeclarations = 4096;
/// The parser searches each value for a reference to every entity, and moves the rest of the value for each
/// one that it finds. So this bounds the entity declarations and the ampersands in values, times the
/// characters of the names and values: at most four seconds.
constexpr qint64 kMaxEntitySearch = 4'000'000'000;
/// Characters of entity text that a text of any size may declare and expand before amplification is checked:
/// a few megabytes in the tree.
constexpr qint64 kEntityActivationThreshold = 1'000'000;
/// Maximum ratio of expanded entity text to the length of the text.
constexpr int kMaxEntityAmplification = 10;
/// Longer than a `QString` can be. No text, attribute or entity value may become this long, neither as
/// written nor with entities expanded.
constexpr qint64 kTooLongForQt = qint64{1} << 30;

/// Maximum size of a file. One array holds all its bytes.
constexpr qint64 kMaxFileBytes = qint64{512} * 1024 * 1024;
/// Maximum number of bytes read from a device that does not report its size, such as a pipe that never ends.
constexpr qint64 kMaxUnsizedBytes = qint64{64} * 1024 * 1024;

/// The limit that a document exceeds.
enum class Limit {
    None,
    Nesting,
    EntityDeclarations,
    EntitySearch,
    EntityText,
    TextLength,
    FileBytes,
    UnsizedBytes,
    Stack ///< of the calling thread; all others are constant
};

} // namespace kelxml::limits
