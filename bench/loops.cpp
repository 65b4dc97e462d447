// Loops that read a list and change each of its nodes. A list contains the root's children, or the elements
// with a certain tag name.

#include "host.h"
#include "rows.h"

#include <atomic>
#include <future>
#include <thread>

namespace bench
{

namespace
{

enum class Change { SetAttribute, SetNewAttribute, PutText, CloneToOther, AppendNew };

void change(LibraryTree& tree, IXMLDOMElement& found, Change kind, const Text& text)
{
    if (kind == Change::SetAttribute || kind == Change::SetNewAttribute) {
        const Text& attribute = kind == Change::SetAttribute ? names().kind : names().seen;
        kel::check(found.setAttribute(attribute.bstr.get(), variantOf(text.bstr)));
    } else if (kind == Change::PutText) {
        kel::check(found.put_text(text.bstr.get()));
    } else if (kind == Change::CloneToOther) {
        ComPtr<IXMLDOMNode> copy;
        kel::check(found.cloneNode(VARIANT_TRUE, copy.put()));
        kel::check(tree.otherRoot->appendChild(copy.get(), nullptr));
    } else {
        kel::check(found.appendChild(newElement(*tree.document, names().note.bstr).get(), nullptr));
    }
}

void change(QtTree& tree, QDomElement found, Change kind, const Text& text)
{
    if (kind == Change::SetAttribute || kind == Change::SetNewAttribute) {
        const Text& attribute = kind == Change::SetAttribute ? names().kind : names().seen;
        found.setAttribute(attribute.ready, QString::fromStdWString(text.wide));
    } else if (kind == Change::PutText) {
        found.removeChild(found.firstChild());
        found.appendChild(tree.document.createTextNode(QString::fromStdWString(text.wide)));
    } else if (kind == Change::CloneToOther) {
        tree.other.documentElement().appendChild(found.cloneNode(true));
    } else {
        found.appendChild(tree.document.createElement(names().note.ready));
    }
}

enum class Found { ByName, AsChildren, AsBoth };

/// Returns the list that a loop reads. For `Found::AsBoth`, returns two lists, from which the loop takes
/// nodes alternately.
std::vector<ComPtr<IXMLDOMNodeList>> listsOf(const LibraryTree& tree, Found found)
{
    std::vector<ComPtr<IXMLDOMNodeList>> lists;
    if (found != Found::AsChildren)
        kel::check(tree.document->selectNodes(names().item.bstr.get(), lists.emplace_back().put()));
    if (found != Found::ByName)
        kel::check(tree.root->get_childNodes(lists.emplace_back().put()));
    return lists;
}

std::vector<QDomNodeList> listsOf(const QtTree& tree, Found found)
{
    std::vector<QDomNodeList> lists;
    if (found != Found::AsChildren)
        lists.push_back(tree.document.elementsByTagName(names().item.ready));
    if (found != Found::ByName)
        lists.push_back(tree.root.childNodes());
    return lists;
}

enum class Read { ByNextNode, ByIndex };

/// Reads the next node of a list.
/// \return false at the end of the list
bool readNext(IXMLDOMNodeList& list, Read read, LONG index, ComPtr<IXMLDOMNode>& node)
{
    if (read == Read::ByNextNode)
        return list.nextNode(node.put()) == S_OK;
    LONG length = 0;
    kel::check(list.get_length(&length));
    return index < length && list.get_item(index, node.put()) == S_OK;
}

std::uint64_t loop(LibraryTree& tree, Found found, Change kind, Read read = Read::ByNextNode)
{
    const auto lists = listsOf(tree, found);
    ComPtr<IXMLDOMNode> node;
    for (std::uint64_t met = 0;; ++met) {
        for (const auto& list : lists) {
            if (!readNext(*list, read, static_cast<LONG>(met), node))
                return met;
            change(tree, static_cast<IXMLDOMElement&>(*node), kind, textAt(met));
        }
    }
}

std::uint64_t loop(QtTree& tree, Found found, Change kind)
{
    const auto lists = listsOf(tree, found);
    for (int index = 0;; ++index) {
        for (const QDomNodeList& list : lists) {
            if (index >= list.length())
                return static_cast<std::uint64_t>(index);
            change(tree, list.item(index).toElement(), kind, textAt(static_cast<std::size_t>(index)));
        }
    }
}

/// Collects all elements before it changes any of them. `loop` is slow with Qt, because each change makes Qt
/// re-read the list.
std::uint64_t loopFoundFirst(QtTree& tree, Found found, Change kind)
{
    const auto lists = listsOf(tree, found);
    std::vector<QDomElement> elements;
    for (int index = 0, count = lists.front().length(); index < count; ++index)
        for (const QDomNodeList& list : lists)
            elements.push_back(list.item(index).toElement());
    for (std::size_t index = 0; index < elements.size(); ++index)
        change(tree, elements[index], kind, textAt(index / lists.size()));
    return elements.size() / lists.size();
}

/// Compares the same loops with and without a second thread. `Pair::library` runs the loops while a second
/// thread runs them on another document. `Pair::direct` runs the loops alone.
Pair twoThreads(const Size& size)
{
    const auto work = [](LibraryTree& tree) {
        std::uint64_t met = 0;
        for (const Found found : {Found::ByName, Found::AsChildren})
            for (const Change kind :
                 {Change::SetAttribute, Change::PutText, Change::AppendNew, Change::PutText})
                met += loop(tree, found, kind);
        return met;
    };
    const auto together = [=](LibraryTree& tree) {
        std::promise<void> started; // waiting for a promise takes no CPU time
        std::atomic<bool> isDone = false;
        std::thread other([&] {
            LibraryTree others(size.value);
            for (started.set_value(); !isDone;)
                work(others);
        });
        started.get_future().wait();
        const std::uint64_t met = work(tree);
        isDone = true;
        other.join();
        return met;
    };
    return onFresh<LibraryTree, LibraryTree>(size.value, together, work, size.value);
}

/// Adds two rows. In the first row, each side changes an element as soon as it has read that element: the
/// library reads with `nextNode`, and Qt by index. In the second row, the library reads by index, and Qt
/// collects all elements before it changes any of them.
void addRows(std::vector<Row>& rows, const std::string& name, Found found, Change kind)
{
    const auto work = [=](auto& tree) { return loop(tree, found, kind); };
    const auto byIndex = [=](LibraryTree& tree) { return loop(tree, found, kind, Read::ByIndex); };
    const auto foundFirst = [=](QtTree& tree) { return loopFoundFirst(tree, found, kind); };
    const auto make = [](auto ours, auto qts) {
        return
            [=](const Size& size) { return onFresh<LibraryTree, QtTree>(size.value, ours, qts, size.value); };
    };
    rows.push_back({"loop; " + name + "; nextNode",
                    {{"4000", 4'000, 2}, {"40000", 40'000, 5, true}},
                    make(work, work),
                    0.1});
    rows.push_back({"loop; " + name + "; index",
                    {{"4000", 4'000, 20}, {"40000", 40'000, 5}},
                    make(byIndex, foundFirst)});
}

} // namespace

std::vector<Row> loopRows()
{
    constexpr std::pair<Change, const char*> kChanges[] = {
        {Change::SetAttribute, "set an attribute"},
        {Change::SetNewAttribute, "set a new attribute"},
        {Change::PutText, "put_text"},
        {Change::CloneToOther, "clone to another document"},
        {Change::AppendNew, "append a child"}};
    std::vector<Row> rows;
    for (const auto& [kind, name] : kChanges) {
        addRows(rows, std::string(name) + "; by tag name", Found::ByName, kind);
        addRows(rows, std::string(name) + "; children", Found::AsChildren, kind);
    }
    addRows(rows, "append a child; both lists in turn", Found::AsBoth, Change::AppendNew);
    rows.push_back({"appending to each of N children",
                    {{"10000", 10'000, 5}, {"100000", 100'000, 3}, {"1000000", 1'000'000, 1}},
                    [](const Size& size) {
                        const auto append = [](LibraryTree& tree) {
                            return loop(tree, Found::AsChildren, Change::AppendNew);
                        };
                        const auto appendAfterwards = [](QtTree& tree) {
                            return loopFoundFirst(tree, Found::AsChildren, Change::AppendNew);
                        };
                        return onFresh<LibraryTree, QtTree>(size.value, append, appendAfterwards, size.value);
                    }});
    rows.push_back({"two threads", {{"10000", 10'000, 20}}, twoThreads, 1.2});
    return rows;
}

} // namespace bench
