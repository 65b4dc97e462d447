// The look at a text against what Qt then makes of the text: nothing deeper, nothing longer than the look
// said.

#include "dom/text_bounds.h"
#include "support.h"

#include <QtCore/QBuffer>
#include <QtXml/QDomDocument>
#include <algorithm>
#include <cstdint>

using namespace kelxml;
using kelfuzz::require;

namespace
{

struct Tree
{
    int depth = 0;
    qint64 length = 0;
};

Tree measure(const QDomDocument& document)
{
    Tree tree;
    int depth = 0;
    for (QDomNode node = document.firstChild(); !node.isNull();) {
        const int elements = depth + (node.isElement() ? 1 : 0);
        tree.depth = std::max(tree.depth, elements);
        tree.length += node.nodeValue().size();
        const QDomNamedNodeMap attributes = node.attributes();
        for (int i = 0; i < attributes.length(); ++i)
            tree.length += attributes.item(i).nodeValue().size();
        QDomNode next = node.firstChild();
        depth += next.isNull() ? 0 : 1;
        for (; next.isNull() && !node.isNull(); depth -= next.isNull() ? 1 : 0) {
            next = node.nextSibling();
            if (next.isNull())
                node = node.parentNode();
        }
        node = next;
    }
    return tree;
}

/// \param length the most characters that the text can have
/// \param onlyElementsNest whether no content model can have parentheses
template <class Content>
void check(const bounds::Look& look, Content&& content, qint64 length, bool hasEntities,
           bool onlyElementsNest)
{
    require(look.nesting <= bounds::kMaxNesting + 1);
    if (!look.within) {
        // Without entities, only markup that is there can nest, and a parenthesis is the shortest.
        require(hasEntities || length > bounds::kMaxNesting);
        return;
    }
    QDomDocument document;
    const bool accepted = document.setContent(content);
    const Tree tree = measure(document);
    require(tree.depth <= look.nesting && look.nesting <= bounds::kMaxNesting);
    require(!accepted || !onlyElementsNest || tree.depth == look.nesting);
    require(tree.length <= length + std::max(bounds::kMaxEntityText, bounds::kEntityTextPerLength * length));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QString text = QString::fromUtf8(bytes);
    check(bounds::lookAt(text), text, text.size(), text.contains(QLatin1String("<!EN")),
          !text.contains(u'('));

    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    const bounds::Look look = bounds::lookAt(buffer);
    require(buffer.pos() == 0);
    // What the encoding makes of the bytes is Qt's to know.
    check(look, &buffer, bytes.size(), true, false);
    return 0;
}
