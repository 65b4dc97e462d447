// The limits of texts, files and trees. docs/limits.md explains them.

#pragma once

#include <QtCore/QtGlobal>

namespace kelxml::limits
{

/// Maximum nesting of elements in content, of elements in an entity's value, and of parentheses in a content
/// model. Of all operations on a tree, saving needs the most stack: about 1.4 KiB per level. At the limit,
/// saving needs 2.9 MB of stack; the stack usually has 8 MiB.
constexpr int kMaxNesting = 2048;
/// Maximum number of levels in a tree. Each element is a level, and so is any other node with children,
/// except an element's attribute that contains only a text. The limit is equal to `kMaxNesting`, so that no
/// saved tree is too deep to be loaded again.
constexpr int kMaxElementDepth = kMaxNesting;
/// Maximum depth of nodes of any type: the deepest element may have an attribute, and the attribute a text.
constexpr int kMaxNodeDepth = kMaxElementDepth + 2;

/// Maximum number of entity declarations. The parser searches the value of each entity for references to
/// every entity. At the limit, if all values are empty, the search takes a third of a second.
constexpr int kMaxEntityDeclarations = 4096;
/// Maximum product of two counts. The first count is the number of entity declarations plus the number of
/// ampersands in entity values. The second count is the number of characters in entity names and values. The
/// parser searches the value of each entity for references to every entity. Each time the parser replaces a
/// reference, it moves the rest of the value. At the limit, these searches and moves take at most four
/// seconds.
constexpr qint64 kMaxEntitySearch = 4'000'000'000;
/// Number of characters of entity text that any document may have, however short it is. Entity text consists
/// of the values of entities and the text that replaces references to entities. Only documents with more
/// entity text are checked for amplification. In the tree, this number of characters takes a few megabytes.
constexpr qint64 kEntityActivationThreshold = 1'000'000;
/// Maximum amplification: the ratio of entity text to the length of the document.
constexpr int kMaxEntityAmplification = 10;
/// The smallest length that is too long for a `QString`. Every text, attribute value and entity value must be
/// shorter, both as written and with all references expanded.
constexpr qint64 kTooLongForQt = qint64{1} << 30;

/// Maximum size of a file. All bytes of the file are read into one array.
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
