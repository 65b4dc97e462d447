// Bytes that a live object of each kind takes, beside what Qt's handle to the same node takes. Prints
// Markdown.

#include "host.h"

#include <cstdio>
#include <malloc.h>

namespace bench
{

namespace
{

constexpr std::size_t kObjects = 10'000;

/// \param make makes one more object and keeps it
template <class Make>
void print(const char* name, Make make)
{
    std::vector<ComPtr<IUnknown>> kept;
    kept.reserve(kObjects);
    const std::size_t before = mallinfo2().uordblks;
    for (std::size_t object = 0; object < kObjects; ++object)
        kept.push_back(make());
    std::printf("| %s | %zu |\n", name, (mallinfo2().uordblks - before) / kObjects);
}

template <class Interface>
ComPtr<IUnknown> asUnknown(const ComPtr<Interface>& object)
{
    return ComPtr<IUnknown>(object.get());
}

} // namespace

} // namespace bench

int main()
{
    using namespace bench;
    startLibrary();
    const LibraryTree tree(1);
    IXMLDOMElement& item = *tree.elements.front();
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    item.get_attributes(attributes.put());
    std::printf("| Object, with the owner document that each has | Bytes |\n|---|--:|\n");
    print("element", [&] {
        ComPtr<IXMLDOMNode> node;
        tree.root->get_firstChild(node.put());
        return asUnknown(node);
    });
    print("text", [&] {
        ComPtr<IXMLDOMNode> node;
        item.get_firstChild(node.put());
        return asUnknown(node);
    });
    print("attribute", [&] {
        ComPtr<IXMLDOMNode> node;
        attributes->get_item(0, node.put());
        return asUnknown(node);
    });
    print("list of children", [&] {
        ComPtr<IXMLDOMNodeList> list;
        item.get_childNodes(list.put());
        return asUnknown(list);
    });
    print("map of attributes", [&] {
        ComPtr<IXMLDOMNamedNodeMap> map;
        item.get_attributes(map.put());
        return asUnknown(map);
    });
    return 0;
}
