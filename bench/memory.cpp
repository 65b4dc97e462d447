// Memory: what a piece of work takes at its peak, through the library and with Qt directly, and the bytes of
// a live object of each kind beside those of Qt's handle. Prints Markdown.

#include "host.h"
#include "inputs.h"
#include "peak.h"
#include "rows.h"

#include <algorithm>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

/// Of one side, in a fresh process that ends with it. \return megabytes
double peakElsewhere(const Row& row, const Size& size, Side Pair::*side)
{
    int ends[2];
    require(pipe(ends) == 0, "a pipe");
    const pid_t child = fork();
    require(child >= 0, "a process");
    if (child == 0) {
        const Pair pair = row.make(size);
        const Side& measured = pair.*side;
        measured.prepare();
        const double peak = peakOf(measured.work);
        _exit(write(ends[1], &peak, sizeof peak) == sizeof peak ? 0 : 1); // the files are the parent's
    }
    close(ends[1]);
    double peak = 0;
    const bool came = read(ends[0], &peak, sizeof peak) == sizeof peak;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    require(came, "a measured peak");
    return peak;
}

void printPeaks()
{
    std::printf("| Peak memory of | Size | Library | Qt |\n|---|--:|--:|--:|\n");
    for (const Row& row : allRows()) {
        const auto size = std::find_if(row.sizes.begin(), row.sizes.end(), [](const Size& each) {
            return each.name == "10 MB" || each.name == "100000";
        });
        if (size == row.sizes.end() || row.isByName)
            continue;
        inputFile(10'000'000); // so that all processes read the same
        std::printf("| %s | %s | %.1f MB | %.1f MB |\n", row.name.c_str(), size->name.c_str(),
                    peakElsewhere(row, *size, &Pair::library), peakElsewhere(row, *size, &Pair::direct));
        std::fflush(stdout);
    }
}

constexpr std::size_t kObjects = 10'000;

/// \param make makes one more object
/// \return the bytes of one, itself and what it allocates
template <class Make>
std::size_t bytesOf(Make make)
{
    std::vector<decltype(make())> kept;
    kept.reserve(kObjects);
    const std::size_t before = mallinfo2().uordblks;
    for (std::size_t object = 0; object < kObjects; ++object)
        kept.push_back(make());
    return sizeof(kept.front()) + (mallinfo2().uordblks - before) / kObjects;
}

template <class Make, class MakeByQt>
void printBytes(const char* name, Make make, MakeByQt makeByQt)
{
    std::printf("| %s | %zu | %zu |\n", name, bytesOf(make), bytesOf(makeByQt));
}

void printObjects()
{
    const LibraryTree tree(1);
    IXMLDOMElement& item = *tree.elements.front();
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    item.get_attributes(attributes.put());
    const QtTree qtTree(1);
    const QDomElement& qtItem = qtTree.elements.front();

    std::printf(
        "| Object, with the pointer to it and the owner document that each has | Bytes | Qt's handle |\n"
        "|---|--:|--:|\n");
    const auto node = [](auto get) {
        return [=] {
            ComPtr<IXMLDOMNode> made;
            get(made.put());
            return made;
        };
    };
    printBytes("element", node([&](auto out) { tree.root->get_firstChild(out); }),
               [&] { return qtTree.root.firstChildElement(); });
    printBytes("text", node([&](auto out) { item.get_firstChild(out); }),
               [&] { return qtItem.firstChild(); });
    printBytes("attribute", node([&](auto out) { attributes->get_item(0, out); }),
               [&] { return qtItem.attributes().item(0).toAttr(); });
    printBytes(
        "list of children",
        [&] {
            ComPtr<IXMLDOMNodeList> list;
            item.get_childNodes(list.put());
            return list;
        },
        [&] { return qtItem.childNodes(); });
    printBytes(
        "map of attributes",
        [&] {
            ComPtr<IXMLDOMNamedNodeMap> map;
            item.get_attributes(map.put());
            return map;
        },
        [&] { return qtItem.attributes(); });
}

} // namespace

} // namespace bench

int main()
{
    bench::startLibrary();
    bench::printPeaks();
    std::printf("\n");
    bench::printObjects();
    return 0;
}
