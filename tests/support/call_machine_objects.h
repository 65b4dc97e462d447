// What the call machine loads and holds. Each object has a model beside it, which keeps alive what the real
// one is to keep alive.

#pragma once

#include "KelXmlLib/convenience.h"
#include "support/model_tree.h"

namespace model
{

using kel::ComPtr;

/// A text, and what Qt makes of it when it stands alone.
struct Text
{
    std::wstring xml;
    bool isLoaded;
    NodePtr tree;
};

/// Texts of every kind: short, long, refused before and after something was read, without an element.
inline const std::vector<Text>& texts()
{
    static const std::vector<Text> all = [] {
        std::wstring flat, nested, comments;
        for (int number = 0; number < 16; ++number) {
            const std::wstring text = std::to_wstring(number);
            flat += L"<e>" + text + L"</e><c x='1'>" + text + L"</c><e/>";
            nested += L"<e>" + text + L"<c/><e/></e>";
            comments += L"<!--" + text + L"--><?p d?>";
        }
        std::vector<Text> made;
        for (const std::wstring& xml :
             {L"<a x='1' y='2'>t<b><c z='3'/>u</b><!--k--><![CDATA[cd]]><?pi d?>" + flat + L"</a>",
              L"<!DOCTYPE r [<!ENTITY e 'v'><!NOTATION n SYSTEM 's'>]><r>&e;&u;" + flat + L"</r>",
              L"<c>" + nested + L"</c>", L"<a x=''><e/>t<c w='1'>" + nested, comments,
              std::wstring(L"<?xml version='1.0'?><e/><!--z-->"), std::wstring(L"<e><c/>t</e>"),
              std::wstring(L"<bad")}) {
            QDomDocument parsed;
            const bool isLoaded = parsed.setContent(QString::fromStdWString(xml));
            made.push_back({xml, isLoaded, fromQt(parsed)});
        }
        return made;
    }();
    return all;
}

/// The document handle that goes from object to object, kept alive by each.
struct Handle
{
    NodePtr document; ///< null when it comes from a document that held no tree then
    NodePtr standIn;  ///< kept alive in the place of none
};

/// What an object over an attribute keeps alive.
inline NodePtr ownerElementOf(const NodePtr& node)
{
    const NodePtr parent = node && node->type == NODE_ATTRIBUTE ? node->parent.lock() : nullptr;
    return parent && parent->type == NODE_ELEMENT ? parent : nullptr;
}

struct Object;
using ObjectPtr = std::shared_ptr<Object>;

/// A node object, and what it keeps alive.
struct Object
{
    DOMNodeType kind; ///< the class: element, attribute, document, or 0 for the generic node
    NodePtr node;     ///< null when the object holds none
    Handle handle;
    NodePtr ownerElement{};        ///< an attribute's element
    ObjectPtr ownerDocument{};     ///< once it was asked for
    ObjectPtr root{};              ///< a document's element, once it was asked for
    const void* address = nullptr; ///< of the real one, where the same is handed out again
};

struct Held
{
    ComPtr<IXMLDOMNode> object;
    ObjectPtr model;

    const Object* operator->() const { return model.get(); }
    const Handle& handle() const { return model->handle; }
    /// The node, or one without anything.
    const Node& orNone() const { return model->node ? *model->node : kNone; }
    IXMLDOMDocument& asDocument() const { return static_cast<IXMLDOMDocument&>(*object); }
    inline static const Node kNone;
};

struct HeldList
{
    ComPtr<IXMLDOMNodeList> object;
    NodePtr top;
    Handle from;
    NodePtr ownerElement;
    const wchar_t* tag; ///< null for the children
    unsigned cursor = 0;

    Nodes kept{}; ///< by a long list, until it is read again

    const Handle& handle() const { return from; }
    /// What a reading finds.
    Nodes read()
    {
        Nodes found;
        if (top && tag)
            collect(top, tag, found);
        else if (top)
            found = top->children;
        kept = found.size() >= kLong ? found : Nodes();
        return found;
    }
    static constexpr std::size_t kLong = 32;
};

struct HeldMap
{
    ComPtr<IXMLDOMNamedNodeMap> object;
    NodePtr element; ///< null for anything else, which is not kept
    Handle from;

    const Handle& handle() const { return from; }
};

} // namespace model
