// Calls by name. The other side is what a call cannot avoid: the virtual calls, and the allocation of names.

#include "host.h"
#include "rows.h"

#include "KelComWrapper/typeinfo.h"

#include <benchmark/benchmark.h>
#include <cwchar>
#include <memory>

namespace bench
{

namespace
{

const GUID kNoInterface{};

VARIANT invoke(IDispatch& object, DISPID member, WORD flags, DISPPARAMS parameters)
{
    VARIANT result{};
    const HRESULT answer =
        object.Invoke(member, kNoInterface, 0, flags, &parameters, &result, nullptr, nullptr);
    require(answer == S_OK, "a call by name");
    return result;
}

DISPID identifierOf(IDispatch& object, wchar_t* name)
{
    DISPID identifier = DISPID_UNKNOWN;
    object.GetIDsOfNames(kNoInterface, &name, 1, 0, &identifier);
    return identifier;
}

/// The least that answers a name: one virtual call, and one comparison with the name that is meant.
class LeastLookup
{
public:
    virtual ~LeastLookup() = default;
    virtual HRESULT find(wchar_t* name, const wchar_t* meant, DISPID* identifier)
    {
        const std::size_t length = std::wcslen(name);
        *identifier = std::wcslen(meant) == length && std::wmemcmp(name, meant, length) == 0 ? 1 : -1;
        return S_OK;
    }
    /// For calls that do nothing but happen.
    virtual HRESULT nothing() { return S_OK; }
};

/// Keeps the compiler from knowing what is called.
LeastLookup& leastLookup()
{
    static LeastLookup lookup;
    LeastLookup* unknown = &lookup;
    benchmark::DoNotOptimize(unknown);
    return *unknown;
}

/// The names of all members of an interface, as its type information lists them.
std::vector<Bstr> memberNames(IDispatch& object)
{
    ComPtr<ITypeInfo> information;
    require(object.GetTypeInfo(0, 0, information.put()) == S_OK, "type information");
    TYPEATTR* attributes = nullptr;
    require(information->GetTypeAttr(&attributes) == S_OK, "the type's attributes");
    const auto count = attributes->cFuncs;
    information->ReleaseTypeAttr(attributes);
    std::vector<Bstr> names;
    for (UINT index = 0; index < count; ++index) {
        FUNCDESC* function = nullptr;
        require(information->GetFuncDesc(index, &function) == S_OK, "a member's description");
        information->GetDocumentation(function->memid, names.emplace_back().put(), nullptr, nullptr, nullptr);
        information->ReleaseFuncDesc(function);
    }
    return names;
}

Pair cachedLookup(const Size& size)
{
    const auto tree = std::make_shared<LibraryTree>(1);
    const auto names = std::make_shared<std::vector<Bstr>>();
    for (const wchar_t* const name : {L"nodeName", L"childNodes", L"firstChild", L"text", L"setAttribute"})
        names->emplace_back(name);
    const auto rounds = size.value / static_cast<std::int64_t>(names->size());
    const auto look = [=](auto find) {
        std::uint64_t known = 0;
        for (std::int64_t round = 0; round < rounds; ++round)
            for (const Bstr& name : *names)
                known += find(name) != DISPID_UNKNOWN;
        return known;
    };
    return {{[=] {
                IDispatch& object = *tree->root;
                return look([&](const Bstr& name) { return identifierOf(object, name.get()); });
            }},
            {[=] {
                LeastLookup& least = leastLookup();
                return look([&](const Bstr& name) {
                    DISPID identifier = DISPID_UNKNOWN;
                    least.find(name.get(), name.get(), &identifier);
                    return identifier;
                });
            }},
            size.value};
}

Pair firstLookup(const Size& size)
{
    const auto tree = std::make_shared<LibraryTree>(size.value);
    const auto names = std::make_shared<std::vector<Bstr>>(memberNames(*tree->root));
    const auto wanted = std::make_shared<Bstr>(L"nodeName");
    const auto fresh = std::make_shared<std::vector<ComPtr<IXMLDOMNode>>>();
    const auto caches = std::make_shared<std::vector<std::vector<Bstr>>>();
    return {{[=] {
                 std::uint64_t known = 0;
                 for (const auto& node : *fresh)
                     known += identifierOf(*node, wanted->get()) != DISPID_UNKNOWN;
                 return known;
             },
             [=] {
                 fresh->clear();
                 ComPtr<IXMLDOMNodeList> list;
                 tree->root->get_childNodes(list.put());
                 ComPtr<IXMLDOMNode> node;
                 while (list->nextNode(node.put()) == S_OK)
                     fresh->push_back(std::move(node));
             }},
            {[=] {
                 constexpr int kCallsPerMember = 4; // describe, name, release, and once more for its length
                 LeastLookup& least = leastLookup();
                 for (std::int64_t wrapper = 0; wrapper < size.value; ++wrapper) {
                     std::vector<Bstr> cache;
                     cache.reserve(names->size());
                     for (const Bstr& name : *names) {
                         for (int call = 0; call < kCallsPerMember; ++call)
                             least.nothing();
                         cache.emplace_back(name.get());
                     }
                     caches->push_back(std::move(cache));
                 }
                 return static_cast<std::uint64_t>(size.value);
             },
             [=] { caches->clear(); }},
            size.value};
}

Pair propertyGet(const Size& size)
{
    const auto tree = std::make_shared<LibraryTree>(1);
    const DISPID nodeName = identifierOf(*tree->root, Bstr(L"nodeName").get());
    return {{[=] {
                IDispatch& object = *tree->root;
                std::uint64_t characters = 0;
                for (std::int64_t call = 0; call < size.value; ++call)
                    characters += taken(invoke(object, nodeName, DISPATCH_PROPERTYGET, {})).length();
                return characters;
            }},
            {[=] {
                IXMLDOMNode& object = *tree->root;
                std::uint64_t characters = 0;
                for (std::int64_t call = 0; call < size.value; ++call) {
                    Bstr name;
                    object.get_nodeName(name.put());
                    characters += name.length();
                }
                return characters;
            }},
            size.value};
}

Pair methodWithArguments(const Size& size)
{
    const auto tree = std::make_shared<LibraryTree>(1);
    const auto name = std::make_shared<Bstr>(L"kind");
    const DISPID setAttribute = identifierOf(*tree->root, Bstr(L"setAttribute").get());
    return {{[=] {
                IDispatch& object = *tree->root;
                for (std::int64_t call = 0; call < size.value; ++call) {
                    // The last argument first.
                    VARIANT arguments[] = {variantOf(textAt(static_cast<std::size_t>(call)).bstr),
                                           variantOf(*name)};
                    invoke(object, setAttribute, DISPATCH_METHOD, {arguments, nullptr, 2, 0});
                }
                return static_cast<std::uint64_t>(size.value);
            }},
            {[=] {
                IXMLDOMElement& object = *tree->root;
                for (std::int64_t call = 0; call < size.value; ++call)
                    object.setAttribute(name->get(), variantOf(textAt(static_cast<std::size_t>(call)).bstr));
                return static_cast<std::uint64_t>(size.value);
            }},
            size.value};
}

} // namespace

std::vector<Row> lateBoundRows()
{
    constexpr double kUnavoidable = 3;
    return {{"name lookup from the cache", sizesFrom(10'000, 20), cachedLookup, kUnavoidable, 60, true},
            {"first lookup on a fresh wrapper", sizesFrom(1'000, 10), firstLookup, kUnavoidable, 5'000, true},
            {"property get", sizesFrom(10'000, 20), propertyGet, kUnavoidable, 250, true},
            {"method with arguments", sizesFrom(10'000, 20), methodWithArguments, kUnavoidable, 0, true}};
}

} // namespace bench
