// Walks, reads, changes and builds trees.

#include "host.h"
#include "rows.h"

namespace bench
{

namespace
{

// Full walks read all names and values, and return the number of nodes plus the number of characters.

std::uint64_t walkChildren(IXMLDOMNode& node);

std::uint64_t readAttribute(IXMLDOMAttribute& attribute)
{
    Bstr name;
    attribute.get_nodeName(name.put());
    VARIANT value{};
    attribute.get_value(&value);
    return 1 + name.length() + taken(value).length();
}

std::uint64_t walkAttributes(IXMLDOMNode& node)
{
    std::uint64_t amount = 0;
    const auto map = attributesOf(node);
    LONG index = 0;
    while (const auto attribute = itemOf(*map, index++))
        amount += readAttribute(static_cast<IXMLDOMAttribute&>(*attribute));
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
    return 1 + name.length() + taken(value).length();
}

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

std::uint64_t readAttribute(const QDomAttr& attribute)
{
    return 1 + attribute.nodeName().toStdWString().size() + attribute.value().toStdWString().size();
}

std::uint64_t walkAttributes(const QDomNode& node)
{
    std::uint64_t amount = 0;
    const QDomNamedNodeMap attributes = node.attributes();
    for (int index = 0; index < attributes.length(); ++index)
        amount += readAttribute(attributes.item(index).toAttr());
    return amount;
}

template <class WalkChildren>
std::uint64_t walk(const QDomNode& node, WalkChildren walkChildren)
{
    const std::wstring name = node.nodeName().toStdWString();
    if (node.nodeType() == QDomNode::ElementNode)
        return 1 + name.size() + walkAttributes(node) + walkChildren(node);
    return 1 + name.size() + node.nodeValue().toStdWString().size();
}

std::uint64_t walkChildren(const QDomNode& node)
{
    std::uint64_t amount = 0;
    const QDomNodeList children = node.childNodes();
    for (int index = 0; index < children.length(); ++index)
        amount += walk(children.item(index), static_cast<std::uint64_t (*)(const QDomNode&)>(walkChildren));
    return amount;
}

std::uint64_t walkSiblings(const QDomNode& node)
{
    std::uint64_t amount = 0;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling())
        amount += walk(child, walkSiblings);
    return amount;
}

// Walks of names read only the names of nodes. Lists and node objects take most of the time of these walks.

std::uint64_t walkNames(IXMLDOMNode& node)
{
    Bstr name;
    node.get_nodeName(name.put());
    std::uint64_t amount = 1 + name.length();
    ComPtr<IXMLDOMNodeList> children;
    node.get_childNodes(children.put());
    ComPtr<IXMLDOMNode> child;
    while (children->nextNode(child.put()) == S_OK)
        amount += walkNames(*child);
    return amount;
}

std::uint64_t walkNamesByQt(const QDomNode& node)
{
    std::uint64_t amount = 1 + node.nodeName().toStdWString().size();
    const QDomNodeList children = node.childNodes();
    for (int index = 0; index < children.length(); ++index)
        amount += walkNamesByQt(children.item(index));
    return amount;
}

template <class QtWalk>
Pair fullWalk(const Size& size, std::uint64_t (*walk)(IXMLDOMNode&), QtWalk qtWalk)
{
    const auto ours = loadedByLibrary(inputFile(size.value));
    const QDomDocument qts = loadedByQt(inputFile(size.value));
    return {{[=] { return walk(*ours); }}, {[=] { return qtWalk(qts); }}, 1};
}

/// Returns a function that makes the two sides of a row. Each side has a tree. The library's side calls
/// `each` once for each element of its tree; Qt's side calls `qtEach` in the same way. Each call returns an
/// amount, and the side returns the sum of the amounts.
template <class Each, class QtEach>
constexpr auto withEach(Each each, QtEach qtEach)
{
    return [=](const Size& size) -> Pair {
        const auto ours = std::make_shared<LibraryTree>(size.value);
        const auto qts = std::make_shared<QtTree>(size.value);
        const auto sum = [](auto& tree, const auto& call) {
            std::uint64_t amount = 0;
            for (std::size_t index = 0; index < tree.elements.size(); ++index)
                amount += call(tree, tree.elements[index], index);
            return amount;
        };
        return {{[=] { return sum(*ours, each); }}, {[=] { return sum(*qts, qtEach); }}, size.value};
    };
}

using Wrapper = const ComPtr<IXMLDOMElement>;

/// Reads an attribute from the map of its element. The first turn, which is not measured, creates the maps.
constexpr auto kGetNamedItem = withEach(
    [](LibraryTree& tree, Wrapper& element, std::size_t index) {
        if (index == tree.maps.size())
            element->get_attributes(tree.maps.emplace_back().put());
        ComPtr<IXMLDOMNode> attribute;
        tree.maps[index]->getNamedItem(names().kind.bstr.get(), attribute.put());
        return readAttribute(static_cast<IXMLDOMAttribute&>(*attribute));
    },
    [](QtTree& tree, QDomElement& element, std::size_t index) {
        if (index == tree.maps.size())
            tree.maps.push_back(element.attributes());
        return readAttribute(tree.maps[index].namedItem(names().kind.ready).toAttr());
    });

/// Goes from an element to its text and back.
constexpr auto kNavigate = withEach(
    [](LibraryTree&, Wrapper& element, std::size_t) {
        ComPtr<IXMLDOMNode> child;
        ComPtr<IXMLDOMNode> parent;
        element->get_firstChild(child.put());
        return child->get_parentNode(parent.put()) == S_OK;
    },
    [](QtTree&, QDomElement& element, std::size_t) { return !element.firstChild().parentNode().isNull(); });

constexpr auto kSetAttribute = withEach(
    [](LibraryTree&, Wrapper& element, std::size_t index) {
        return element->setAttribute(names().id.bstr.get(), variantOf(textAt(index).bstr)) == S_OK;
    },
    [](QtTree&, QDomElement& element, std::size_t index) {
        element.setAttribute(names().id.ready, QString::fromStdWString(textAt(index).wide));
        return true;
    });

/// Moves the element to the end of the children of its parent.
constexpr auto kAppendChild = withEach(
    [](LibraryTree& tree, Wrapper& element, std::size_t) {
        return tree.root->appendChild(element.get(), nullptr) == S_OK;
    },
    [](QtTree& tree, QDomElement& element, std::size_t) { return !tree.root.appendChild(element).isNull(); });

/// Builds a tree. Each record has four nodes: an element with an attribute, and a child element with a text.
std::uint64_t build(LibraryDocument& library, std::size_t records)
{
    IXMLDOMDocument& document = *library.document;
    const auto root = newElement(document, names().item.bstr);
    document.appendChild(root.get(), nullptr);
    for (std::size_t index = 0; index < records; ++index) {
        const auto record = newElement(document, names().record.bstr);
        record->setAttribute(names().id.bstr.get(), variantOf(textAt(index).bstr));
        const auto note = newElement(document, names().note.bstr);
        note->put_text(textAt(index + 1).bstr.get());
        record->appendChild(note.get(), nullptr);
        root->appendChild(record.get(), nullptr);
    }
    return records;
}

std::uint64_t build(QDomDocument& document, std::size_t records)
{
    QDomElement root = document.createElement(names().item.ready);
    document.appendChild(root);
    for (std::size_t index = 0; index < records; ++index) {
        QDomElement record = document.createElement(names().record.ready);
        record.setAttribute(names().id.ready, QString::fromStdWString(textAt(index).wide));
        QDomElement note = document.createElement(names().note.ready);
        note.appendChild(document.createTextNode(QString::fromStdWString(textAt(index + 1).wide)));
        record.appendChild(note);
        root.appendChild(record);
    }
    return records;
}

Pair buildFromNothing(const Size& size)
{
    const auto records = static_cast<std::size_t>(size.value) / 4;
    const auto work = [=](auto& document) { return build(document, records); };
    return onFresh<LibraryDocument, QDomDocument>(size.value, work, work);
}

} // namespace

std::vector<Row> treeRows()
{
    const std::vector<Size> documents = {{"MIME", 0, 15}, {"1 MB", 1'000'000, 25}, {"10 MB", 10'000'000, 5}};
    const std::vector<Size> trees = {{"10000", 10'000, 20}, {"100000", 100'000, 5}};
    const std::vector<Size> large = {trees[0], trees[1], {"1000000", 1'000'000, 3}};
    const auto byLists = [](const QDomNode& node) { return walkChildren(node); };
    return {{"full walk", documents, [=](const Size& size) { return fullWalk(size, walkChildren, byLists); },
             1.5},
            {"walk of names", documents,
             [](const Size& size) { return fullWalk(size, walkNames, walkNamesByQt); }, 1.7},
            {"full walk, Qt by nextSibling",
             {documents[0], documents[2]},
             [](const Size& size) { return fullWalk(size, walkChildren, walkSiblings); }},
            {"get_firstChild, get_parentNode", trees, kNavigate},
            {"getNamedItem, get_value", trees, kGetNamedItem, 1.8},
            {"setAttribute", trees, kSetAttribute, 1.8},
            {"appendChild, moving a node", large, kAppendChild},
            {"building from nothing", large, buildFromNothing, 1.8}};
}

} // namespace bench
