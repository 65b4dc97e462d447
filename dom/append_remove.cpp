// Each function recognises the child, changes the tree with `trees/append_remove`, and stores a new object
// for the child in `result`. Each function returns S_OK even if Qt or the library refuses the change. A
// caller can see a refusal only in the `result` of an element's `removeChild`.

#include "dom/append_remove.h"

#include "dom/child.h"
#include "dom/wrap.h"
#include "trees/append_remove.h"

namespace kelxml::dom
{

namespace
{

/// \param change a function that changes the tree. It returns the node for which `result` gets an object
template <class Change>
HRESULT changeTree(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result, Change change)
{
    if (!child)
        return S_OK;
    const std::optional<Child> known = recognise(child);
    if (!known)
        return S_FALSE;
    MovableNode node = change(*known);
    if (!result)
        return S_OK;
    // `child` may come from another document than `self`. The new object gets the document of `self`. If
    // `self` has no document yet, the new object keeps the document of `child` alive.
    wrapAs(known->type, std::move(node), self.document.withFallback(known->ref.document), result);
    return S_OK;
}

} // namespace

HRESULT appendChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeTree(self, child, result, [&](const Child& known) {
        trees::appendChild(self, known.ref);
        return known.ref.node;
    });
}

HRESULT removeChild(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeTree(self, child, result, [&](const Child& known) {
        trees::removeChild(self, known.ref);
        return known.ref.node;
    });
}

HRESULT removeChildOfElement(const NodeRef& self, IXMLDOMNode* child, IXMLDOMNode** result)
{
    return changeTree(self, child, result, [&](const Child& known) {
        const QDomNode removed = trees::removeChild(self, known.ref);
        return known.type == NODE_ELEMENT ? removed : known.ref.node;
    });
}

} // namespace kelxml::dom
