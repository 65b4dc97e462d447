// The look at a text against what Qt then makes of the text: nothing deeper, nothing longer than the look
// said.

#include "guards/limits.h"
#include "guards/prescan.h"
#include "support.h"

#include <QtCore/QBuffer>
#include <QtXml/QDomDocument>
#include <algorithm>
#include <cstdint>

using namespace kelxml::guards;
using kelfuzz::require;

namespace
{

struct Tree
{
    int depth = 0;
    qint64 length = 0;
};

/// \param depth how many elements there are down to the node
void measure(const QDomNode& node, int depth, Tree& tree)
{
    tree.depth = std::max(tree.depth, depth);
    tree.length += node.nodeValue().size();
    const QDomNamedNodeMap attributes = node.attributes();
    for (int i = 0; i < attributes.length(); ++i)
        tree.length += attributes.item(i).nodeValue().size();
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        measure(child, depth + (child.isElement() ? 1 : 0), tree);
}

/// \param length the most characters that the text can have
/// \param onlyElementsNest whether no content model can have parentheses
template <class Content>
void check(const Prescan& seen, Content&& content, qint64 length, bool hasEntities, bool onlyElementsNest)
{
    require(seen.nesting <= kMaxNesting + 1);
    if (!seen.within) {
        // Without entities, only markup that is there can nest, and a parenthesis is the shortest.
        require(hasEntities || length > kMaxNesting);
        return;
    }
    QDomDocument document;
    const bool accepted = document.setContent(content);
    Tree tree;
    measure(document, 0, tree);
    require(tree.depth <= seen.nesting && seen.nesting <= kMaxNesting);
    require(!accepted || !onlyElementsNest || tree.depth == seen.nesting);
    require(tree.length <= length + std::max(kEntityActivationThreshold, kMaxEntityAmplification * length));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QString text = QString::fromUtf8(bytes);
    check(prescan(text), text, text.size(), text.contains(QLatin1String("<!EN")), !text.contains(u'('));

    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    const Prescan seen = prescan(bytes);
    require(buffer.pos() == 0);
    // What the encoding makes of the bytes is Qt's to know.
    check(seen, &buffer, bytes.size(), true, false);
    return 0;
}
