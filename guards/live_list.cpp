// Short lists are Qt's. A long one is read once through Qt's and kept.

#include "guards/live_list.h"

#include "guards/tree.h"

namespace kelxml::guards
{

QDomNodeList makeList(const ListOrigin& origin, const DocumentRef& document)
{
    adopt({origin.node, document});
    if (origin.tagName.isNull())
        return origin.node.childNodes();
    if (origin.node.isDocument())
        return origin.node.toDocument().elementsByTagName(origin.tagName);
    return origin.node.toElement().elementsByTagName(origin.tagName);
}

LiveList::LiveList(ListOrigin&& origin) : m_origin(std::move(origin)), m_madeAt(documentChanges()) {}

template <class Read>
auto LiveList::read(QDomNodeList& list, const DocumentRef& document, Read read)
{
    adopt({m_origin.node, document});
    if (m_madeAt != documentChanges())
        list = makeList(m_origin, document);
    m_madeAt = kNeverMade; // until it was read whole: without memory, Qt takes what it got to for the whole
    const auto answer = read(list);
    m_madeAt = documentChanges();
    return answer;
}

int LiveList::length(QDomNodeList& list, const DocumentRef& document)
{
    if (isKept())
        return static_cast<int>(m_kept->nodes.size());
    const int length = read(list, document, [](const QDomNodeList& all) { return all.length(); });
    const bool isLong = length >= keptFrom();
    m_firstUnsure = isLong ? 0 : keptFrom();
    m_kept.reset();
    if (isLong)
        keep(length, list);
    return length;
}

QDomNode LiveList::item(int index, QDomNodeList& list, const DocumentRef& document)
{
    if (index >= m_firstUnsure) {
        if (index >= length(list, document))
            return {};
        if (m_kept)
            return m_kept->nodes[static_cast<std::size_t>(index)];
    }
    return read(list, document, [=](const QDomNodeList& all) { return all.item(index); });
}

std::uint64_t LiveList::changesNow() const
{
    return isByTagName() ? changesOfElements(m_origin.tagName, m_origin.node)
                         : changesOfChildren(m_origin.node);
}

bool LiveList::isKept() const
{
    return m_kept && m_kept->changes == changesNow();
}

void LiveList::keep(int length, const QDomNodeList& list)
{
    auto kept = std::make_unique<Kept>();
    kept->nodes.reserve(static_cast<std::size_t>(length));
    for (int index = 0; index < length; ++index)
        kept->nodes.push_back(list.item(index));
    kept->changes = changesNow();
    m_kept = std::move(kept);
}

} // namespace kelxml::guards
