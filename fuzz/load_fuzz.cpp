// Loading and saving through the interface against Qt used directly: the same verdict, the same saved bytes,
// nothing deeper and nothing longer than the look at the text said, and a text beyond the bounds is refused
// with the earlier tree in place.

#include "KelXmlLib/convenience.h"
#include "guards/limits.h"
#include "guards/prescan.h"
#include "support.h"
#include "support/saved_by_qt.h"

using namespace kelxml::guards;
using namespace kelfuzz;
using kel::Bstr;
using kel::Variant;

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

QByteArray savedBy(IXMLDOMDocument& document)
{
    static const MemoryFile file;
    require(document.save(Variant(file.path()).get()) == S_OK);
    return file.read();
}

/// \param load loads into the document given, with the flag given
/// \param content what Qt is to load
/// \param length the most characters that it can have
/// \param text what it is; null where it has to be decoded, which is Qt's to do
template <class Load, class Content>
void compare(Load load, const Prescan& seen, Content&& content, qint64 length, const QString& text = {})
{
    require(seen.nesting <= kMaxNesting + 1);
    // Without entities, only markup that is there can nest, and a parenthesis is the shortest.
    const bool hasEntities = text.isNull() || text.contains(QLatin1String("<!EN"));
    require(seen.within || hasEntities || length > kMaxNesting);
    const auto document = kel::newDocument();
    require(document->loadXML(Bstr(L"<earlier/>").get(), nullptr) == S_OK);
    const QByteArray earlier = savedBy(*document);
    VARIANT_BOOL success = 7;
    const HRESULT result = load(*document, &success);
    QDomDocument direct;
    const bool accepted = seen.within && direct.setContent(content);
    require(result == (accepted ? S_OK : S_FALSE));
    require(success == (accepted ? VARIANT_TRUE : VARIANT_FALSE));
    require(savedBy(*document) == (seen.within ? savedByQt(direct) : earlier));
    Tree tree;
    measure(direct, 0, tree);
    require(!seen.within || (tree.depth <= seen.nesting && seen.nesting <= kMaxNesting));
    const bool onlyElementsNest = !text.isNull() && !text.contains(u'('); // and no content model
    require(!accepted || !onlyElementsNest || tree.depth == seen.nesting);
    require(tree.length <= length + std::max(kEntityActivationThreshold, kMaxEntityAmplification * length));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Bstr xml(QString::fromUtf8(bytes).toStdWString().c_str());
    const QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(xml.c_str()));
    if (!text.isEmpty())
        compare([&xml](auto& document, auto* success) { return document.loadXML(xml.get(), success); },
                prescan(text), text, text.size(), text);

    static MemoryFile file;
    file.write(bytes);
    const Variant path(file.path());
    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    compare([&path](auto& document, auto* success) { return document.load(path.get(), success); },
            prescan(bytes), &buffer, bytes.size());
    return 0;
}
