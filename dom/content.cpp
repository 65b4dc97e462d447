// Each rule is one Qt call with the conversions around it.

#include "dom/content.h"

#include "dom/text.h"
#include "dom/tree_guards.h"

namespace kelxml
{

HRESULT nodeName(const NodeRef& self, BSTR* name)
{
    if (!name)
        return S_FALSE;
    *name = toBstr(self.node.nodeName());
    return S_OK;
}

HRESULT nodeValue(const QString& value, VARIANT* out)
{
    if (!out)
        return S_FALSE;
    putString(value, out);
    return S_OK;
}

HRESULT setNodeValue(const NodeRef& self, const wchar_t* text)
{
    settle(self);
    QDomNode(self.node).setNodeValue(fromWide(text));
    return S_OK;
}

} // namespace kelxml
