// Which changes of a tree concern a list that keeps its nodes. Each change that can is counted, so that the
// list is read anew after those and no others. Nothing is counted while there is no such list.

#pragma once

#include <QtXml/QDomDocument>
#include <cstdint>

namespace kelxml::guards
{

/// Changes are counted while one lives.
class ListWatch
{
public:
    ListWatch() noexcept;
    ~ListWatch();
    ListWatch(const ListWatch&) = delete;
    ListWatch& operator=(const ListWatch&) = delete;
};

/// Counts that only grow, and are the same only if nothing has changed. Those of other nodes and names may
/// grow with them.
std::uint64_t changesOfChildren(const QDomNode& parent) noexcept;
/// \param origin below which elements of that name are looked for
std::uint64_t changesOfElements(const QString& name, const QDomNode& origin) noexcept;

/// Whether a change is counted: one comparison.
bool areChangesCounted() noexcept;

/// To be called before `node` is put below `parent`, and before it is taken away from there.
void noteChild(const QDomNode& node, const QDomNode& parent);
/// To be called before the top-level nodes of a document are replaced; elements below them keep theirs.
void noteReplacedContent(const QDomDocument& document) noexcept;

} // namespace kelxml::guards
