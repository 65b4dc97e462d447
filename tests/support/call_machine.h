// The call machine is a random-call test. It makes random calls on the library's objects (documents,
// elements, attributes, other nodes, lists and maps) and on values of the C++ layer. It makes the same
// changes in a model, and compares each result with the model. A seeded generator or a fuzzer's bytes choose
// the calls.

#pragma once

#include "support/call_machine_layer.h"

#include <numeric>

namespace model
{

/// Has one function for each kind of call. Each function makes the call, makes the same change in the model,
/// and compares the result of the call with the model.
class CallMachine
{
    template <class Things>
    auto& oneOf(Things& things)
    {
        return things[m_choose(std::size(things))];
    }

public:
    /// \param documents number of documents. If there are several, some have no tree at first. If there is
    ///        only one, it is loaded immediately, and all nodes belong to it
    explicit CallMachine(Choose choose, std::size_t documents = 3)
        : m_choose(std::move(choose)), m_isOneDocument(documents == 1)
    {
        while (m_documents.size() < documents)
            m_documents.push_back(newDocument());
    }
    CallMachine(const CallMachine&) = delete;
    /// Releases everything, in an order that `choose` decides.
    ~CallMachine()
    {
        while (!m_nodes.empty() || !m_lists.empty() || !m_maps.empty() || !m_layer.isEmpty())
            release();
    }

    /// Makes one call. \throw std::logic_error with the kind of call and the broken rule
    void step()
    {
        const Step& step = chooseStep();
        try {
            (this->*step.call)();
            if (!m_nodes.empty())
                compare(oneOf(m_nodes));
            if (!m_lists.empty())
                compare(oneOf(m_lists));
        } catch (const std::exception& failure) {
            throw std::logic_error("in the call '" + std::string(step.name) + "', " + failure.what());
        }
    }

private:
    struct Step
    {
        const char* name;
        void (CallMachine::*call)();
        unsigned weight; ///< relative frequency
    };
    const Step& chooseStep()
    {
        using M = CallMachine;
        static constexpr Step kSteps[] = {
            {"load", &M::load, 1},
            {"create", &M::create, 2},
            {"append", &M::append, 4},
            {"move children", &M::moveChildren, 1},
            {"remove", &M::remove, 2},
            {"walk", &M::walk, 2},
            {"get the owner", &M::getOwner, 1},
            {"get the root", &M::getRoot, 1},
            {"make a list", &M::makeList, 2},
            {"use a list", &M::useList, 1},
            {"make a map", &M::makeMap, 1},
            {"use a map", &M::useMap, 1},
            {"change content", &M::changeContent, 2},
            {"clone", &M::clone, 1},
            {"save", &M::save, 1},
            {"close a document", &M::close, 1},
            {"release", &M::release, 1},
            {"wrap in a value", &M::wrapInValue, 2},
            {"unwrap a value", &M::unwrapValue, 1},
            {"navigate from a value", &M::navigateFromValue, 2},
            {"change through a value", &M::changeThroughValue, 5},
        };
        const auto add = [](unsigned sum, const Step& step) { return sum + step.weight; };
        const Step* step = kSteps;
        for (unsigned place = m_choose(std::accumulate(std::begin(kSteps), std::end(kSteps), 0U, add));
             place >= step->weight; ++step)
            place -= step->weight;
        return *step;
    }

    Held newDocument()
    {
        const auto document = ::newDocument();
        Held held{ComPtr<IXMLDOMNode>(document.get()), makeObject(NODE_DOCUMENT, nullptr, {})};
        held.model->address = document.get();
        if (m_isOneDocument || m_choose(2))
            loadInto(held, oneOf(texts()));
        return held;
    }
    Held pick() { return m_nodes.empty() || m_choose(8) == 0 ? oneOf(m_documents) : oneOf(m_nodes); }
    Held pickDocument() { return m_choose(3) != 0 ? oneOf(m_documents) : (getOwner(), m_nodes.back()); }
    /// Half the time, picks any node. Otherwise picks a document or the first child of a document, because
    /// these nodes have the most children.
    Held pickParent()
    {
        if (m_choose(2))
            return pick();
        const Held document = pickDocument();
        return walk(document) ? m_nodes.back() : document;
    }

    /// Keeps an object and its model. The model stores the object's address. If an earlier call has stored an
    /// address, the object must be at that address.
    void keep(const ComPtr<IXMLDOMNode>& object, const ObjectPtr& model)
    {
        require(bool(object), "the call returns an object, not null");
        require(!model->address || model->address == object.get(), "repeated calls return the same object");
        model->address = object.get();
        m_nodes.push_back({object, model});
        compare(m_nodes.back());
    }
    /// Keeps an object that a call returned, and makes a model for the object. `object` must be null if and
    /// only if `node` is null. \return whether there is an object
    bool keepAsIs(const ComPtr<IXMLDOMNode>& object, const NodePtr& node, const Handle& handle)
    {
        requireEqual(bool(object), bool(node), "an object is returned if and only if the model has a node");
        if (!node)
            return false;
        const bool hasClass = node->type == NODE_ELEMENT || node->type == NODE_ATTRIBUTE;
        const auto kind = hasClass ? static_cast<DOMNodeType>(node->type) : NODE_INVALID;
        keep(object, makeObject(kind, node, handle));
        return true;
    }

    /// Creates the tree in the model of a document, as the first load or createNode of a document does.
    static void createTree(Object& document)
    {
        if (!document.node)
            document.node = document.handle.document = make(NODE_DOCUMENT, L"#document");
    }
    void loadInto(const Held& held, const Text& text)
    {
        const HRESULT code = asDocument(held).loadXML(Bstr(text.xml.c_str()).get(), nullptr);
        if (code != (text.isLoaded ? S_OK : S_FALSE))
            fail("loadXML accepts what Qt accepts: code " + shown(code) + " for " + shown(text.xml));
        if (text.xml.empty())
            return;
        createTree(*held.model);
        while (!held->node->children.empty())
            model::remove(held->node, held->node->children.back());
        const NodePtr content = fromQt(text.parsed);
        for (const NodePtr& child : content->children)
            adopt(held->node, child, held->node->children);
    }
    void load()
    {
        static const Text none{L""};
        loadInto(pickDocument(), m_choose(8) ? oneOf(texts()) : none);
    }

    void create()
    {
        const Held held = pickDocument();
        const int type = m_choose(3) != 0 ? NODE_ELEMENT : NODE_ATTRIBUTE;
        const wchar_t* const name = type == NODE_ATTRIBUTE ? oneOf(kAttributes) : m_choose(2) ? L"e" : L"c";
        ComPtr<IXMLDOMNode> made;
        asDocument(held).createNode(Variant(type).get(), Bstr(name).get(), nullptr, made.put());
        createTree(*held.model);
        keepAsIs(made, make(type, name), held->handle);
    }

    /// Keeps the object that appendChild or removeChild returned. Each call returns a new object, even if the
    /// parent refused the child. \param node the node of the new object, or null
    void keepResult(const ComPtr<IXMLDOMNode>& result, const Held& parent, const Held& child,
                    const NodePtr& node)
    {
        Handle handle = parent->handle;
        if (!handle.documentOrFallback())
            handle.fallback = child->handle.documentOrFallback();
        keep(result, makeObject(child->kind == NODE_DOCUMENT ? NODE_INVALID : child->kind, node, handle));
    }
    void append()
    {
        const Held parent = pick();
        const Held child = pick();
        ComPtr<IXMLDOMNode> result;
        requireOk(parent.object->appendChild(child.object.get(), result.put()), "appendChild");
        model::append(parent->node, child->node);
        keepResult(result, parent, child, child->node);
    }
    void moveChildren()
    {
        const Held from = pickParent();
        const Held to = pick();
        for (std::size_t count = from->nodeOrEmpty().children.size(); count > 0; --count) {
            ComPtr<IXMLDOMNode> child;
            from.object->get_firstChild(child.put());
            to.object->appendChild(child.get(), nullptr);
            model::append(to->node, NodePtr(from->node->children.front()));
        }
    }

    void remove()
    {
        const Held parent = pick();
        Held child = pick();
        if (m_choose(2) && !parent->nodeOrEmpty().children.empty()) {
            const auto index = m_choose(parent->node->children.size());
            keepAsIs(itemsOf(*get(*parent.object, &IXMLDOMNode::get_childNodes)).at(index),
                     parent->node->children[index], parent->handle);
            child = m_nodes.back();
        }
        ComPtr<IXMLDOMNode> result;
        requireOk(parent.object->removeChild(child.object.get(), result.put()), "removeChild");
        const bool isEmpty = !model::remove(parent->node, child->node) && parent->kind == NODE_ELEMENT &&
                             child->kind == NODE_ELEMENT;
        keepResult(result, parent, child, isEmpty ? nullptr : child->node);
    }

    void walk() { walk(pick()); }
    /// Gets and keeps the parent or the first child of a node. \return whether there is such a node
    bool walk(const Held& from)
    {
        const bool isUp = m_choose(2);
        ComPtr<IXMLDOMNode> found;
        isUp ? from.object->get_parentNode(found.put()) : from.object->get_firstChild(found.put());
        const Nodes& children = from->nodeOrEmpty().children;
        const NodePtr below = children.empty() ? nullptr : children.front();
        return keepAsIs(found, isUp ? from->nodeOrEmpty().parent.lock() : below, from->handle);
    }
    void getOwner()
    {
        Held from = pick();
        ComPtr<IXMLDOMDocument> owner;
        requireOk(from.object->get_ownerDocument(owner.put()), "get_ownerDocument");
        ObjectPtr& known = from->kind == NODE_DOCUMENT ? from.model : from.model->ownerDocument;
        if (!known)
            known = makeObject(NODE_DOCUMENT, from->handle.document, {from->handle.document, nullptr});
        keep(ComPtr<IXMLDOMNode>(owner.get()), known);
    }
    void getRoot()
    {
        const Held from = pickDocument();
        ComPtr<IXMLDOMElement> root;
        requireOk(asDocument(from).get_documentElement(root.put()), "get_documentElement");
        const auto isElement = [](const NodePtr& child) { return child->type == NODE_ELEMENT; };
        const NodePtr node = first(from->nodeOrEmpty().children, isElement);
        if (!from->root)
            from.model->root = makeObject(NODE_ELEMENT, node, from->handle);
        keep(ComPtr<IXMLDOMNode>(root.get()), from->root);
    }

    void makeList()
    {
        const Held source = pickParent();
        const bool canSearch = source->kind == NODE_ELEMENT || source->kind == NODE_DOCUMENT;
        static constexpr const wchar_t* kTags[] = {L"e", L"c", nullptr}; // null selects all children
        const bool isSearch = canSearch && m_choose(3);
        HeldList list{{nullptr, makeObject(source->kind, source->node, source->handle)},
                      isSearch ? oneOf(kTags) : nullptr};
        const HRESULT code = isSearch ? source.object->selectNodes(Bstr(list.tag).get(), list.object.put())
                                      : source.object->get_childNodes(list.object.put());
        requireOk(code, isSearch ? "selectNodes" : "get_childNodes");
        m_lists.push_back(std::move(list));
    }
    void useList()
    {
        if (m_lists.empty())
            return;
        HeldList& list = oneOf(m_lists);
        const Nodes expected = list.expected();
        const bool isNext = m_choose(2);
        const unsigned index = isNext ? list.cursor : m_choose(expected.size() + 1);
        const NodePtr node = index < expected.size() ? expected[index] : nullptr;
        ComPtr<IXMLDOMNode> item;
        const HRESULT code = isNext ? list.object->nextNode(item.put())
                                    : list.object->get_item(static_cast<LONG>(index), item.put());
        requireOk(code, isNext ? "nextNode" : "get_item", bool(node));
        list.cursor += isNext && node ? 1 : 0;
        keepAsIs(item, node, list->handle);
    }

    void makeMap()
    {
        const Held source = pick();
        const NodePtr element = source->nodeOrEmpty().type == NODE_ELEMENT ? source->node : nullptr;
        HeldMap map{nullptr, makeObject(NODE_INVALID, element, source->handle)};
        requireOk(source.object->get_attributes(map.object.put()), "get_attributes");
        m_maps.push_back(std::move(map));
    }
    void useMap()
    {
        if (m_maps.empty())
            return;
        const HeldMap& map = oneOf(m_maps);
        const Node& element = map->nodeOrEmpty();
        compareAttributes(itemsOf(*map.object), element);
        const wchar_t* const name = oneOf(kAttributes);
        ComPtr<IXMLDOMNode> item;
        map.object->getNamedItem(Bstr(name).get(), item.put());
        keepAsIs(item, element.attribute(name), map->handle);
    }

    void changeContent()
    {
        const Held held = pick();
        const NodePtr& node = held->node;
        // Most texts are different, so that nodes with the same name have different texts. Some texts are
        // empty.
        const std::wstring text = m_choose(8) ? std::to_wstring(++m_texts) : std::wstring();
        const bool isElement = held->kind == NODE_ELEMENT;
        if (isElement && m_choose(2)) {
            const wchar_t* const name = oneOf(kAttributes);
            static_cast<IXMLDOMElement&>(*held.object).setAttribute(Bstr(name).get(), Variant(text).get());
            if (node)
                setAttribute(node, name, text);
            return;
        }
        const Bstr given(text.empty() ? nullptr : text.c_str());
        requireOk(held.object->put_text(given.get()), "put_text");
        if (node && isElement)
            setText(node, text);
        else if (node)
            setValue(node, text);
    }

    void clone()
    {
        const Held held = pick();
        if (held->kind != NODE_ELEMENT)
            return;
        const bool deep = m_choose(2);
        ComPtr<IXMLDOMNode> copy;
        requireOk(held.object->cloneNode(deep ? VARIANT_TRUE : VARIANT_FALSE, copy.put()), "cloneNode");
        keepAsIs(copy, held->node ? copyOf(*held->node, deep) : nullptr, held->handle);
    }

    void save() { requireOk(asDocument(pickDocument()).save(Variant(L"/dev/null").get()), "save"); }

    void wrapInValue() { m_layer.wrap(pick()); }
    void unwrapValue()
    {
        m_layer.unwrap([this](const auto& object, const NodePtr& node, const Handle& handle) {
            keepAsIs(object, node, handle);
        });
    }
    void navigateFromValue() { m_layer.navigate(); }
    void changeThroughValue() { m_layer.change(); }

    void release()
    {
        const auto drop = [this](auto& held) {
            if (!held.empty())
                held.erase(held.begin() + m_choose(held.size()));
        };
        // Releases any number of nodes at once. The remaining objects must keep alive what they need.
        for (unsigned count = m_choose(m_nodes.size() + 1); count > 0; --count)
            drop(m_nodes);
        drop(m_lists);
        drop(m_maps);
        m_layer.release();
    }
    /// Releases a document and every object that came from this document. Creates a new document in its
    /// place.
    void close()
    {
        if (m_isOneDocument)
            return;
        Held& document = oneOf(m_documents);
        const auto isFromIt = [closed = document->node](const auto& one) {
            return one->handle.document == closed;
        };
        const auto drop = [&isFromIt](auto& held) {
            held.erase(std::remove_if(held.begin(), held.end(), isFromIt), held.end());
        };
        m_layer.drop(isFromIt);
        drop(m_nodes);
        drop(m_lists);
        drop(m_maps);
        document = newDocument();
    }

    static constexpr const wchar_t* kAttributes[] = {L"x", L"w", L"z"};

    Choose m_choose;
    bool m_isOneDocument;
    unsigned m_texts = 1000;
    std::vector<Held> m_documents;
    std::vector<Held> m_nodes;
    std::vector<HeldList> m_lists;
    std::vector<HeldMap> m_maps;
    LayerCalls m_layer{m_choose};
};

} // namespace model
