// Every change has the same steps: recognise the child, change the tree, return a new object for the child.
// Refusals are not reported, except that an element's `removeChild` returns what Qt says it removed.

#include "dom/mutation.h"

#include "dom/child.h"
#include "dom/wrap.h"
#include "trees/tree.h"

namespace kelxml::dom
{

namespace
{

/// \param change receives the child, changes the tree and returns the node for the result
template <class Change>
HRESULT changeAndHandOut(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result, Change change)
{
    if (!child)
        return S_OK;
    const std::optional<Child> known = recognise(child);
    if (!known)
        return S_FALSE;
    MovableNode node = change(*known);
    if (!result)
        return S_OK;
    // Use this node's document: the child may come from any other.
    wrapAs(known->type, std::move(node), self.document.withFallback(known->ref.document), result);
    return S_OK;
}

} // namespace

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Child& known) {
        trees::appendChild(self, known.ref);
        return known.ref.node;
    });
}

HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Child& known) {
        trees::removeChild(self, known.ref);
        return known.ref.node;
    });
}

HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeAndHandOut(self, child, result, [&](const Child& known) {
        const QDomNode removed = trees::removeChild(self, known.ref);
        return known.type == NODE_ELEMENT ? removed : known.ref.node;
    });
}

} // namespace kelxml::dom
