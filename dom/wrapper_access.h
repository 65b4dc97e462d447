// Gives the library access to the private members of the six classes that implement the interfaces. Also
// checks the layouts of these classes, because other binaries rely on the layouts.

#pragma once

#include "KelXmlLib/attribute.h"
#include "KelXmlLib/document.h"
#include "KelXmlLib/element.h"
#include "KelXmlLib/named_node_map.h"
#include "KelXmlLib/node.h"
#include "KelXmlLib/node_list.h"
#include "qt/node_ref.h"

namespace kelxml::dom
{

using qt::DocumentRef;
using qt::NodeRef;

// The six classes do not have standard layout, but GCC and Clang support `offsetof` for these classes.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
struct WrapperAccess
{
    template <class Wrapper>
    static NodeRef refTo(const Wrapper& wrapper)
    {
        return {wrapper.m_node, documentOf(wrapper)};
    }
    static NodeRef refTo(const CMorvXMLDOMDocument& document)
    {
        return {document.m_document, documentOf(document)};
    }

    template <class Wrapper>
    static DocumentRef documentOf(const Wrapper& wrapper)
    {
        return {wrapper.m_document, wrapper.m_fallbackDocument.get()};
    }
    static DocumentRef documentOf(const CMorvXMLDOMDocument& document) { return {document.m_document}; }

    /// Creates the Qt document of a document object. Without this call, the object gets a Qt document only
    /// when a document is loaded or a node is created.
    static void makeDocument(CMorvXMLDOMDocument& document) { document.m_document.createDocumentFragment(); }

    /// Call this function in the destructor of an object. All arguments are members of the object. Releases
    /// `ownerDocument`. If `ownerElement` is not null, also releases `document` and `handle`, which may point
    /// to the owner element and must be released before `ownerElement`. Without this call, C++ would release
    /// `ownerElement` first, because `ownerElement` is declared after `document` and `handle`. If
    /// `ownerElement` is null, C++ releases `document` and `handle` after the body of the destructor.
    template <class QtHandle>
    static void releaseAllBefore(const QDomNode& ownerElement,
                                 kel::ComPtr<CMorvXMLDOMDocument>& ownerDocument, QDomDocument& document,
                                 QtHandle& handle)
    {
        ownerDocument.reset();
        if (ownerElement.isNull())
            return;
        static const QDomDocument noDocument;
        static const QtHandle noHandle;
        document = noDocument;
        handle = noHandle;
    }

    template <class Wrapper>
    static constexpr bool layoutHolds()
    {
        return offsetof(Wrapper, m_refCount) == 64 && offsetof(Wrapper, m_node) == 72 &&
               offsetof(Wrapper, m_ownerDocument) == 80 && offsetof(Wrapper, m_document) == 88;
    }
    static constexpr bool documentLayoutHolds()
    {
        using T = CMorvXMLDOMDocument;
        return offsetof(T, m_refCount) == 64 && offsetof(T, m_document) == 72 &&
               offsetof(T, m_documentElement) == 80 && sizeof(T) == 88;
    }
    static constexpr bool listLayoutHolds()
    {
        using T = CMorvXMLDOMNodeList;
        return offsetof(T, m_refCount) == 64 && offsetof(T, m_list) == 72 && offsetof(T, m_cursor) == 80 &&
               offsetof(T, m_ownerDocument) == 88 && offsetof(T, m_document) == 96;
    }
    static constexpr bool mapLayoutHolds()
    {
        using T = CMorvXMLDOMNamedNodeMap;
        return offsetof(T, m_refCount) == 64 && offsetof(T, m_map) == 72 &&
               offsetof(T, m_ownerDocument) == 80 && offsetof(T, m_document) == 88;
    }
};

static_assert(WrapperAccess::layoutHolds<CMorvXMLDOMNode>() &&
                  WrapperAccess::layoutHolds<CMorvXMLDOMElement>() &&
                  WrapperAccess::layoutHolds<CMorvXMLDOMAttribute>() && WrapperAccess::documentLayoutHolds(),
              "the members of the node classes have the offsets that other binaries use");
static_assert(WrapperAccess::listLayoutHolds() && WrapperAccess::mapLayoutHolds(),
              "the members of the collections have the offsets that other binaries use");
#pragma GCC diagnostic pop

template <class Wrapper>
NodeRef refTo(const Wrapper& wrapper)
{
    return WrapperAccess::refTo(wrapper);
}

template <class Wrapper>
DocumentRef documentOf(const Wrapper& wrapper)
{
    return WrapperAccess::documentOf(wrapper);
}

} // namespace kelxml::dom
