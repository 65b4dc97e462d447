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

/// `change(child)` changes the tree and answers the node that the result wraps, given the reported type.
template <class Change>
HRESULT changeAndHandOut(const Place& self, IXMLDOMNode* child, IXMLDOMNode** result, Change change)
{
    if (!child)
        return S_OK;
    const std::optional<Place> argument = placeOfChild(child);
    if (!argument)
        return S_FALSE;
    DOMNodeType type = NODE_INVALID;
    child->get_nodeType(&type);
    const QDomNode wrapped = change(*argument, type);
    if (result)
        wrapAs(type, wrapped, self.document, result);
    return S_OK;
}

} // namespace

HRESULT appendChild(const Place& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Place& argument, DOMNodeType) {
        appendSafely(self, argument);
        return argument.node;
    });
}

HRESULT removeChild(const Place& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Place& argument, DOMNodeType) {
        removeSafely(self, argument);
        return argument.node;
    });
}

HRESULT removeChildOfElement(const Place& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Place& argument, DOMNodeType type) {
        const QDomNode removed = removeSafely(self, argument);
        return type == NODE_ELEMENT ? removed : argument.node;
    });
}

} // namespace kelxml
