// One shape for every change: recognise the child, change the tree, hand out a new object for the child. What
// Qt or a guard refuses is not reported, but that an element hands out what Qt says it has removed.

#include "dom/mutation.h"

#include "dom/child.h"
#include "dom/wrap.h"
#include "trees/tree.h"

namespace kelxml::dom
{

namespace
{

/// \param change gets the child, changes the tree and answers the node that the result wraps
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
    // The object carries the handle of the one that was asked, for a child that may be a node of any
    // document.
    wrapAs(known->type, std::move(node), self.document.orElse(known->ref.document), result);
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
