// Measures how the time of some work grows. The time should grow in proportion to the amount of work, not to
// the square of that amount, and should not depend on the size of unrelated trees and lists.

#include "host.h"
#include "rows.h"

namespace bench
{

namespace
{

ComPtr<IXMLDOMNodeList> listOf(IXMLDOMNode& node, const wchar_t* name = nullptr)
{
    ComPtr<IXMLDOMNodeList> list;
    kel::check(name ? node.selectNodes(Bstr(name).get(), list.put()) : node.get_childNodes(list.put()));
    return list;
}

std::uint64_t read(IXMLDOMNodeList& list)
{
    LONG length = 0;
    kel::check(list.get_length(&length));
    return static_cast<std::uint64_t>(length) + 1;
}

void setAttribute(IXMLDOMNode& element, std::int64_t number)
{
    const Bstr name((L"a" + std::to_wstring(number)).c_str()), value(L"v");
    kel::check(static_cast<IXMLDOMElement&>(element).setAttribute(name.get(), variantOf(value)));
}

/// Moves `node` back and forth between the root's first two children. `times` is the number of moves.
std::uint64_t shuttle(const ComPtr<IXMLDOMDocument>& document, IXMLDOMNode& node, int times = 100)
{
    const auto parents = listOf(*rootOf(*document));
    for (int time = 0; time < times; ++time)
        kel::check(itemOf(*parents, time % 2)->appendChild(&node, nullptr));
    return 1;
}

/// Every list, whether of children or by tag name, caches its nodes if it has at least this many.
constexpr int kCached = 8;

/// Moves a subtree with `count` different element names, while a list of other elements has cached its nodes.
std::function<std::uint64_t()> moveNames(std::int64_t count)
{
    QString xml = QStringLiteral("<r><a/><b/><n>");
    for (std::int64_t number = 0; number < count; ++number)
        xml += QStringLiteral("<n%1/>").arg(number);
    const auto document = documentOf(xml + QStringLiteral("</n>") +
                                     QStringLiteral("<kept/>").repeated(kCached) + QStringLiteral("</r>"));
    const auto subtree = itemOf(*listOf(*rootOf(*document)), 2);
    const auto kept = listOf(*document, L"kept");
    return [=] { return read(*kept) + shuttle(document, *subtree, 2); };
}

std::function<std::uint64_t()> readFirst(std::int64_t count)
{
    const auto document = documentOf(flatTree(count));
    return [=] {
        const auto list = listOf(*rootOf(*document));
        for (std::int64_t number = 0; number < count; ++number)
            setAttribute(*itemOf(*list, static_cast<LONG>(number % 2)), number % 10);
        return std::uint64_t{1};
    };
}

std::function<std::uint64_t()> moveAttributes(std::int64_t count)
{
    const auto document = documentOf(QStringLiteral("<r><a x='1'/><b/><n/></r>"));
    const auto list = listOf(*rootOf(*document));
    const auto element = itemOf(*list, 2);
    for (std::int64_t number = 0; number < count; ++number)
        setAttribute(*element, number);
    const auto attribute = itemOf(*attributesOf(*itemOf(*list, 0)), 0);
    kel::check(attribute->appendChild(newElement(*document, names().note.bstr).get(), nullptr));
    return [=] { return shuttle(document, *element); };
}

std::function<std::uint64_t()> readUnchanged(std::int64_t count)
{
    const auto document = documentOf(flatTree(count));
    const auto one = documentOf(QStringLiteral("<r><a/></r>"));
    const auto other = documentOf(QStringLiteral("<r/>"));
    const auto list = listOf(*document, L"item");
    return [=] {
        const auto node = itemOf(*listOf(*rootOf(*one)), 0);
        std::uint64_t sum = 0;
        for (std::int64_t number = 0; number < count; ++number) {
            kel::check(rootOf(*(number % 2 ? one : other))->appendChild(node.get(), nullptr));
            sum += read(*list);
        }
        return sum;
    };
}

std::function<std::uint64_t()> readAttributes(std::int64_t count)
{
    const auto document = documentOf(QStringLiteral("<r/>"));
    for (std::int64_t number = 0; number < count; ++number)
        setAttribute(*rootOf(*document), number);
    return [=] {
        std::uint64_t met = 0;
        const auto map = attributesOf(*rootOf(*document));
        while (itemOf(*map, static_cast<LONG>(met)))
            ++met;
        return met;
    };
}

/// Calls `setAttribute` on the deepest element once for each level of the tree, while a list has cached its
/// nodes. In each of these calls, Qt walks up from the element to the document.
Pair setDeep(const Size& size)
{
    const auto depth = static_cast<int>(size.value);
    const QString xml = QStringLiteral("<a>").repeated(depth) + QStringLiteral("</a>").repeated(depth);
    const auto kept = listOf(*documentOf(xml), L"a");
    const auto bottom = itemOf(*kept, depth - 1);
    QDomDocument direct;
    direct.setContent(xml);
    QDomElement directBottom = direct.documentElement();
    while (directBottom.hasChildNodes())
        directBottom = directBottom.firstChildElement();
    const std::uint64_t amount = read(*kept);
    return {{[=] {
                for (int number = 0; number < depth; ++number)
                    setAttribute(*bottom, number % 10);
                return read(*kept);
            }},
            {[=]() mutable {
                for (int number = 0; number < depth; ++number)
                    directBottom.setAttribute(QStringLiteral("a%1").arg(number % 10), QStringLiteral("v"));
                return direct.isNull() ? 0 : amount;
            }},
            size.value};
}

} // namespace

std::vector<Row> growthRows()
{
    const auto row = [](const char* name, std::int64_t least,
                        std::function<std::uint64_t()> (*make)(std::int64_t), std::int64_t items = 0) {
        std::vector<Size> sizes;
        for (const std::int64_t size : {least, 10 * least, 100 * least})
            sizes.push_back({std::to_string(size), size, 3, true});
        return Row{name, sizes, [=](const Size& size) {
                       return Pair{{make(size.value)}, {}, items > 0 ? items : size.value};
                   }};
    };
    return {row("moving a subtree with N tag names", 1'000, moveNames),
            row("reading the first of N children after changes", 1'000, readFirst),
            row("moving an element with N attributes", 100, moveAttributes, 100),
            row("reading N elements while other documents change", 1'000, readUnchanged),
            row("reading N attributes by index", 1'000, readAttributes),
            {"setAttribute, N levels deep", {{"20", 20, 20}, {"2000", 2'000, 5}}, setDeep}};
}

} // namespace bench
