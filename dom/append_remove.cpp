// Each function checks that the child is an object of this library, changes the tree with
// `trees/append_remove`, and stores a new object for the child in `result`. If the child is a foreign object,
// the function returns S_FALSE. If Qt or the library refuses the change for another reason, the function
// returns S_OK. The caller can see such a refusal only in the `result` of an element's `removeChild`.

#include "dom/append_remove.h"

#include "dom/child.h"
#include "dom/wrap.h"
#include "trees/append_remove.h"

namespace kelxml::dom
{

namespace
{

/// \param change a function that changes the tree and returns the node that the object in `result` represents
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
    // `child` may belong to another document than `self`. The new object keeps the document of `self` alive.
    // If `self` has no document yet, the new object keeps the document of `child` alive.
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
