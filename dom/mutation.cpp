// One shape for every change: recognise the child, change the tree, hand out a new object for the child. What
// Qt or a guard refuses is not reported.

#include "dom/mutation.h"

#include "dom/child.h"
#include "dom/tree_guards.h"
#include "dom/wrap.h"

namespace kelxml
{

namespace
{

/// The object that comes out carries the handle of the object that was asked. Where neither that nor what
/// stands in for it is a document, the child's stands in: the child may be a node of any document.
DocumentRef documentOfResult(const DocumentRef& self, const DocumentRef& child)
{
    return {self.handle, self.living().isNull() ? child.living() : self.living()};
}

/// `change(child)` changes the tree and answers the node that the result wraps, given the reported type.
template <class Change>
HRESULT changeAndHandOut(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result, Change change)
{
    if (!child)
        return S_OK;
    const std::optional<NodeRef> argument = refOfChild(child);
    if (!argument)
        return S_FALSE;
    DOMNodeType type = NODE_INVALID;
    child->get_nodeType(&type);
    const QDomNode wrapped = change(*argument, type);
    if (result)
        wrapAs(type, wrapped, documentOfResult(self.document, argument->document), result);
    return S_OK;
}

} // namespace

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const NodeRef& argument, DOMNodeType) {
        appendSafely(self, argument);
        return argument.node;
    });
}

HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const NodeRef& argument, DOMNodeType) {
        removeSafely(self, argument);
        return argument.node;
    });
}

HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const NodeRef& argument, DOMNodeType type) {
        const QDomNode removed = removeSafely(self, argument);
        return type == NODE_ELEMENT ? removed : argument.node;
    });
}

} // namespace kelxml
