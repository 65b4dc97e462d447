// Measures the lookup of names, and compares a property get by name with the same call through the vtable.

#include "host.h"
#include "rows.h"

namespace bench
{

namespace
{

DISPID identifierOf(IDispatch& object, wchar_t* name)
{
    DISPID identifier = DISPID_UNKNOWN;
    object.GetIDsOfNames(GUID{}, &name, 1, 0, &identifier);
    return identifier;
}

/// Repeats a call on one element.
/// \param call makes the measured call and returns an amount
/// \param byVtable makes the same call through the vtable and returns the same amount; not used in a row that
///        measures only the library's side
template <class Call, class ByVtable>
Pair calls(const Size& size, Call call, ByVtable byVtable)
{
    const auto tree = std::make_shared<LibraryTree>(1);
    const auto repeated = [=](auto each) {
        return [=]() mutable {
            std::uint64_t amount = 0;
            for (std::int64_t index = 0; index < size.value; ++index)
                amount += each(*tree->root, static_cast<std::size_t>(index));
            return amount;
        };
    };
    return {{repeated(call)}, {repeated(byVtable)}, size.value};
}

Pair cachedLookup(const Size& size)
{
    static const Bstr kNames[] = {Bstr(L"nodeName"), Bstr(L"childNodes"), Bstr(L"firstChild"), Bstr(L"text")};
    const auto look = [](IDispatch& object, std::size_t index) {
        return identifierOf(object, kNames[index % std::size(kNames)].get()) != DISPID_UNKNOWN;
    };
    return calls(size, look, look);
}

Pair firstLookup(const Size& size)
{
    const auto look = [](std::vector<ComPtr<IXMLDOMNode>>& nodes) {
        static const Bstr kName(L"nodeName");
        std::uint64_t known = 0;
        for (const auto& node : nodes)
            known += identifierOf(*node, kName.get()) != DISPID_UNKNOWN;
        return known;
    };
    const auto tree = std::make_shared<LibraryTree>(size.value);
    const auto fresh = std::make_shared<std::vector<ComPtr<IXMLDOMNode>>>();
    return {{[=] { return look(*fresh); },
             [=] {
                 fresh->clear();
                 const auto children = childrenOf(*tree->root);
                 while (auto node = itemOf(*children, static_cast<LONG>(fresh->size())))
                     fresh->push_back(std::move(node));
             }},
            {},
            size.value};
}

Pair propertyGet(const Size& size)
{
    const DISPID nodeName = identifierOf(*LibraryTree(1).root, Bstr(L"nodeName").get());
    return calls(
        size,
        [=](IDispatch& object, std::size_t) {
            VARIANT name{};
            DISPPARAMS none{};
            kel::check(
                object.Invoke(nodeName, GUID{}, 0, DISPATCH_PROPERTYGET, &none, &name, nullptr, nullptr));
            return taken(name).length();
        },
        [](IXMLDOMNode& object, std::size_t) {
            Bstr name;
            object.get_nodeName(name.put());
            return name.length();
        });
}

} // namespace

std::vector<Row> lateBoundRows()
{
    const std::vector<Size> alone = {{"10000", 10'000, 20, true}};
    return {{"name lookup from the cache", alone, cachedLookup, 0, 60},
            {"first lookup on a fresh wrapper", alone, firstLookup, 0, 1'300},
            {"property get by name", {{"10000", 10'000, 20}}, propertyGet, 3, 250}};
}

} // namespace bench
