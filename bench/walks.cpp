// Reading a tree: walks, lists, maps and texts.

#include "host.h"
#include "inputs.h"
#include "rows.h"

#include <memory>

namespace bench
{

namespace
{

/// A full walk. All amounts are nodes plus characters.
std::uint64_t walk(IXMLDOMNode& node);

std::uint64_t walkChildren(IXMLDOMNode& node)
{
    std::uint64_t amount = 0;
    ComPtr<IXMLDOMNodeList> children;
    node.get_childNodes(children.put());
    ComPtr<IXMLDOMNode> child;
    while (children->nextNode(child.put()) == S_OK)
        amount += walk(*child);
    return amount;
}

std::uint64_t readAttribute(IXMLDOMNode& node)
{
    ComPtr<IXMLDOMAttribute> attribute;
    node.QueryInterface(IID_IXMLDOMAttribute, reinterpret_cast<void**>(attribute.put()));
    Bstr name;
    attribute->get_nodeName(name.put());
    VARIANT value{};
    attribute->get_value(&value);
    const Bstr text = taken(value);
    return 1 + name.length() + text.length();
}

std::uint64_t walkAttributes(IXMLDOMNode& node)
{
    std::uint64_t amount = 0;
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    node.get_attributes(attributes.put());
    LONG length = 0;
    attributes->get_length(&length);
    for (LONG index = 0; index < length; ++index) {
        ComPtr<IXMLDOMNode> attribute;
        attributes->get_item(index, attribute.put());
        amount += readAttribute(*attribute);
    }
    return amount;
}

std::uint64_t walk(IXMLDOMNode& node)
{
    DOMNodeType type = NODE_INVALID;
    node.get_nodeType(&type);
    Bstr name;
    node.get_nodeName(name.put());
    if (type == NODE_ELEMENT)
        return 1 + name.length() + walkAttributes(node) + walkChildren(node);
    VARIANT value{};
    node.get_nodeValue(&value);
    const Bstr text = taken(value);
    return 1 + name.length() + text.length();
}

std::uint64_t walkChildren(const QDomNode& node);

std::uint64_t walkAttributes(const QDomNode& node)
{
    std::uint64_t amount = 0;
    const QDomNamedNodeMap attributes = node.attributes();
    for (int index = 0; index < attributes.length(); ++index) {
        const QDomAttr attribute = attributes.item(index).toAttr();
        const std::wstring name = attribute.nodeName().toStdWString();
        const std::wstring value = attribute.value().toStdWString();
        amount += 1 + name.size() + value.size();
    }
    return amount;
}

std::uint64_t walk(const QDomNode& node)
{
    const QDomNode::NodeType type = node.nodeType();
    const std::wstring name = node.nodeName().toStdWString();
    if (type == QDomNode::ElementNode)
        return 1 + name.size() + walkAttributes(node) + walkChildren(node);
    const std::wstring value = node.nodeValue().toStdWString();
    return 1 + name.size() + value.size();
}

std::uint64_t walkChildren(const QDomNode& node)
{
    std::uint64_t amount = 0;
    const QDomNodeList children = node.childNodes();
    for (int index = 0; index < children.length(); ++index)
        amount += walk(children.item(index));
    return amount;
}

std::uint64_t walkSiblings(const QDomNode& node)
{
    std::uint64_t amount = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const std::wstring name = child.nodeName().toStdWString();
        if (child.isElement())
            amount += 1 + name.size() + walkAttributes(child) + walkSiblings(child);
        else
            amount += 1 + name.size() + child.nodeValue().toStdWString().size();
    }
    return amount;
}

/// How many nodes a document has, attributes included.
std::int64_t countNodes(const QDomNode& node)
{
    std::int64_t count = 1 + node.attributes().length();
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        count += countNodes(child);
    return count;
}

Pair fullWalk(const Size& size)
{
    const auto ours = loadedDocument(inputFile(size.value));
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    return {{[=] { return walkChildren(*ours); }}, {[=] { return walkChildren(qts); }}, countNodes(qts)};
}

Pair fullWalkBySiblings(const Size& size)
{
    const auto ours = loadedDocument(inputFile(size.value));
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    return {{[=] { return walkChildren(*ours); }}, {[=] { return walkSiblings(qts); }}, countNodes(qts)};
}

constexpr int kChainLength = 10;

QString chains(std::int64_t nodes)
{
    const QString chain =
        QStringLiteral("<a>").repeated(kChainLength) + QStringLiteral("</a>").repeated(kChainLength);
    return QStringLiteral("<root>") + chain.repeated(static_cast<int>(nodes / kChainLength)) +
           QStringLiteral("</root>");
}

/// Down to the innermost element and back up. \return the steps
std::uint64_t downAndUp(const ComPtr<IXMLDOMNode>& top)
{
    std::uint64_t depth = 0;
    ComPtr<IXMLDOMNode> node = top;
    for (ComPtr<IXMLDOMNode> next; node->get_firstChild(next.put()) == S_OK; ++depth)
        node = std::move(next);
    for (std::uint64_t step = 0; step < depth; ++step) {
        ComPtr<IXMLDOMNode> next;
        node->get_parentNode(next.put());
        node = std::move(next);
    }
    return 2 * depth;
}

std::uint64_t downAndUp(QDomNode node)
{
    std::uint64_t depth = 0;
    for (QDomNode next = node.firstChild(); !next.isNull(); next = node.firstChild(), ++depth)
        node = next;
    for (std::uint64_t step = 0; step < depth; ++step)
        node = node.parentNode();
    return 2 * depth;
}

Pair firstChildAndParent(const Size& size)
{
    const auto document = newDocument();
    require(document->loadXML(bstrOf(chains(size.value)).get(), nullptr) == S_OK, "loading chains");
    ComPtr<IXMLDOMNodeList> tops;
    rootOf(*document)->get_childNodes(tops.put());
    QDomDocument qts; // held by the work: a list outlives its document, but no longer knows what has changed
    qts.setContent(chains(size.value));
    const QDomNodeList qtTops = qts.documentElement().childNodes();
    const int count = qtTops.length();
    return {{[=] {
                std::uint64_t steps = 0;
                ComPtr<IXMLDOMNode> top;
                for (LONG index = 0; index < count; ++index) {
                    tops->get_item(index, top.put());
                    steps += downAndUp(top);
                }
                return steps;
            }},
            {[=, held = qts] {
                std::uint64_t steps = 0;
                for (int index = 0; index < count; ++index)
                    steps += downAndUp(qtTops.item(index));
                return steps;
            }},
            2 * size.value};
}

Pair listItem(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    ComPtr<IXMLDOMNodeList> list;
    ours->root->get_childNodes(list.put());
    const auto qts = std::make_shared<QtTree>(size.value);
    const QDomNodeList qtList = qts->root.childNodes();
    const auto count = static_cast<LONG>(size.value);
    return {{[=] {
                std::uint64_t found = 0;
                ComPtr<IXMLDOMNode> node;
                for (LONG index = 0; index < count; ++index)
                    found += list->get_item(index, node.put()) == S_OK;
                return found;
            }},
            {[=, held = qts] {
                std::uint64_t found = 0;
                for (int index = 0; index < count; ++index)
                    found += !qtList.item(index).isNull();
                return found;
            }},
            size.value};
}

Pair selectNodes(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    const auto name = std::make_shared<Text>(QStringLiteral("item"));
    return {{[=] {
                std::uint64_t found = 0;
                ComPtr<IXMLDOMNodeList> list;
                ours->document->selectNodes(name->bstr.get(), list.put());
                ComPtr<IXMLDOMNode> node;
                while (list->nextNode(node.put()) == S_OK)
                    ++found;
                return found;
            }},
            {[=] {
                std::uint64_t found = 0;
                const QDomNodeList list = qts->document.elementsByTagName(name->ready);
                for (int index = 0; index < list.length(); ++index)
                    found += !list.item(index).isNull();
                return found;
            }},
            size.value};
}

Pair getNamedItem(const Size& size)
{
    const auto tree = std::make_shared<LibraryTree>(size.value);
    const auto maps = std::make_shared<std::vector<ComPtr<IXMLDOMNamedNodeMap>>>();
    for (const auto& element : tree->elements)
        element->get_attributes(maps->emplace_back().put());
    const auto qtTree = std::make_shared<QtTree>(size.value);
    const auto qtMaps = std::make_shared<std::vector<QDomNamedNodeMap>>();
    for (const QDomElement& element : qtTree->elements)
        qtMaps->push_back(element.attributes());
    const auto name = std::make_shared<Text>(QStringLiteral("kind"));
    return {{[=, held = tree] {
                std::uint64_t amount = 0;
                for (const auto& map : *maps) {
                    ComPtr<IXMLDOMNode> node;
                    map->getNamedItem(name->bstr.get(), node.put());
                    amount += readAttribute(*node);
                }
                return amount;
            }},
            {[=, held = qtTree] {
                std::uint64_t amount = 0;
                for (const QDomNamedNodeMap& map : *qtMaps) {
                    const QDomAttr attribute = map.namedItem(name->ready).toAttr();
                    const std::wstring itsName = attribute.nodeName().toStdWString();
                    const std::wstring value = attribute.value().toStdWString();
                    amount += 1 + itsName.size() + value.size();
                }
                return amount;
            }},
            size.value};
}

Pair getText(const Size& size)
{
    const auto ours = std::make_shared<LibraryTree>(size.value);
    const auto qts = std::make_shared<QtTree>(size.value);
    return {{[=] {
                std::uint64_t amount = 0;
                for (const auto& element : ours->elements) {
                    Bstr text;
                    element->get_text(text.put());
                    amount += text.length();
                }
                return amount;
            }},
            {[=] {
                std::uint64_t amount = 0;
                for (const QDomElement& element : qts->elements)
                    amount += element.text().toStdWString().size();
                return amount;
            }},
            size.value};
}

} // namespace

std::vector<Row> walkRows()
{
    const std::vector<Size> documents = {
        {"mime", 0, 15}, {"1 MB", 1'000'000, 25}, {"10 MB", 10'000'000, 5}, {"100 MB", 100'000'000, 3}};
    return {{"full walk by nextNode", documents, fullWalk, 1.5},
            {"the same, Qt by nextSibling", {documents[0], documents[1]}, fullWalkBySiblings},
            {"get_firstChild, get_parentNode", treeSizes(), firstChildAndParent},
            {"get_item of a long list", treeSizes(), listItem},
            {"selectNodes and its list", treeSizes(), selectNodes},
            {"getNamedItem", treeSizes(), getNamedItem, 1.8},
            {"get_text", treeSizes(), getText, 1.8}};
}

} // namespace bench
