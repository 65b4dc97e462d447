// A few thousand counts, found by a hash of what they are about. Where two things share a count, a list is
// read anew once too often.

#include "guards/list_changes.h"

#include "guards/handle.h"

#include <QtCore/QHash>
#include <QtCore/QVarLengthArray>
#include <array>
#include <atomic>

namespace kelxml::guards
{

namespace
{

std::atomic<int> watches{0};

template <std::size_t Size>
using Counts = std::array<std::atomic<std::uint64_t>, Size>;

// Many, since a loop changes the children of as many nodes as it meets. All threads use them, each for its
// own documents.
Counts<16384> ofChildren{};
Counts<16384> ofElements{};
Counts<256> ofContent{};

/// The count of changes at a node, or of those of one name there.
template <std::size_t Size>
std::atomic<std::uint64_t>& countIn(Counts<Size>& counts, const QDomNode& node, uint nameHash = 0) noexcept
{
    // Addresses and hashes that lie close together are spread by the multiplication; its high bits are the
    // best.
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    const auto address = reinterpret_cast<std::uintptr_t>(Handle::identityOf(node));
    return counts[((address + nameHash * kOdd) * kOdd >> 32) % Size];
}

/// The node after `node` in the subtree of `root`, in document order; null at the end.
Handle nextInSubtree(const Handle& node, const QDomNode& root)
{
    Handle next = node.firstChild();
    for (Handle at = node; next.isNull() && at != root; at = at.parentNode())
        next = at.nextSibling();
    return next;
}

/// The name by which Qt finds an element.
QString listedName(const QDomNode& element)
{
    const QString local = element.localName(); // null for an element of a document read without namespaces
    return local.isNull() ? element.nodeName() : local;
}

/// The hashes of the names of all elements in a subtree.
QVarLengthArray<uint, 16> namesIn(const QDomNode& root)
{
    QVarLengthArray<uint, 16> names;
    for (Handle node{QDomNode(root)}; !node.isNull(); node = nextInSubtree(node, root)) {
        if (!node.isElement())
            continue;
        const uint name = qHash(listedName(node));
        if (!names.contains(name))
            names.append(name);
    }
    return names;
}

} // namespace

ListWatch::ListWatch() noexcept
{
    ++watches;
}

ListWatch::~ListWatch()
{
    --watches;
}

std::uint64_t changesOfChildren(const QDomNode& parent) noexcept
{
    return countIn(ofChildren, parent);
}

std::uint64_t changesOfElements(const QString& name, const QDomNode& origin) noexcept
{
    return countIn(ofElements, origin, qHash(name)) + countIn(ofContent, origin);
}

bool areChangesCounted() noexcept
{
    return watches != 0;
}

void noteChild(const QDomNode& node, const QDomNode& parent)
{
    if (!areChangesCounted())
        return;
    const auto names = namesIn(node);
    ++countIn(ofChildren, parent);
    for (Handle above{QDomNode(parent)}; !above.isNull(); above = above.parentNode())
        for (const uint name : names)
            ++countIn(ofElements, above, name);
}

void noteReplacedContent(const QDomDocument& document) noexcept
{
    ++countIn(ofChildren, document);
    ++countIn(ofContent, document);
}

} // namespace kelxml::guards
