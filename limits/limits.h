// The limits of texts, files and trees. docs/limits.md explains them.

#pragma once

#include <QtCore/QtGlobal>

namespace kelxml::limits
{

/// Maximum nesting of elements in content, of elements in an entity's value, and of parentheses in a content
/// model. Of all operations on a tree, saving needs the most stack, about 1.4 KiB per level. All levels
/// together take 2.9 MB of the usual 8 MiB.
constexpr int kMaxNesting = 2048;
/// Maximum depth of elements, and of other nodes with children, in a tree. Equal to the limit for a text, so
/// that any tree can be saved and loaded again.
constexpr int kMaxElementDepth = kMaxNesting;
/// Maximum depth of all nodes. An attribute and its text may be below the deepest element.
constexpr int kMaxNodeDepth = kMaxElementDepth + 2;

/// Maximum number of entity declarations. The parser compares each declaration with all others: at the limit
/// and with empty values, this takes a third of a second.
constexpr int kMaxEntityDeclarations = 4096;
/// Maximum product of two counts. The first is the number of entity declarations plus the number of
/// ampersands in entity values. The second is the number of characters in entity names and values. The parser
/// searches each value for a reference to every entity, and moves the rest of the value each time it replaces
/// a reference. At the limit, this takes at most four seconds.
constexpr qint64 kMaxEntitySearch = 4'000'000'000;
/// A document of any length may declare and expand this many characters of entity text before amplification
/// is checked. They take a few megabytes in the tree.
constexpr qint64 kEntityActivationThreshold = 1'000'000;
/// Maximum ratio of entity text, declared and expanded, to the length of the document.
constexpr int kMaxEntityAmplification = 10;
/// A `QString` cannot be this long. Every text, attribute and entity value must be shorter, both as written
/// and with its entities expanded.
constexpr qint64 kTooLongForQt = qint64{1} << 30;

/// Maximum size of a file. All its bytes are read into one array.
constexpr qint64 kMaxFileBytes = qint64{512} * 1024 * 1024;
/// Maximum number of bytes read from a device that does not report its size, such as a pipe that never ends.
constexpr qint64 kMaxUnsizedBytes = qint64{64} * 1024 * 1024;

/// Which limit a document exceeds.
enum class Limit {
    None,
    Nesting,
    EntityDeclarations,
    EntitySearch,
    EntityText,
    TextLength,
    FileBytes,
    UnsizedBytes,
    Stack ///< the free stack of the calling thread; all other limits are constant
};

} // namespace kelxml::limits
