// References to a node and to the document that owns the node.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>

namespace kelxml::qt
{

/// The document that an object keeps alive; the object is a COM object or a value of the C++ layer. An object
/// that is reached from another object keeps the same document alive. `handle` is null if the document has
/// neither loaded nor created anything. If a node of another document is then appended to the object, or
/// removed from it, the call returns a new object for that node. The `fallback` of the new object is the
/// node's document, which stays alive as long as the new object.
struct DocumentRef
{
    const QDomDocument& handle;
    const QDomDocument* fallback = nullptr; ///< used only if `handle` is null; `fallback` may also be null

    /// Returns the document that the object keeps alive. Qt's nodes may have raw pointers to it.
    const QDomDocument& handleOrFallback() const { return handle.isNull() && fallback ? *fallback : handle; }
    /// Returns a copy of this reference. If this reference has no document, the copy has the document of
    /// `other` as its fallback.
    DocumentRef withFallback(const DocumentRef& other) const
    {
        return {handle, handleOrFallback().isNull() ? &other.handleOrFallback() : fallback};
    }
    /// If `handle` is null, it keeps no document alive. The object must then keep the handle that this
    /// function returns. If `handle` is not null, the function returns null.
    std::unique_ptr<const QDomDocument> copyOfFallback() const
    {
        return handle.isNull() ? std::make_unique<const QDomDocument>(handleOrFallback()) : nullptr;
    }
};

/// The node and the document of an object. Use a `NodeRef` only during a call, because the `NodeRef` refers
/// to members of the object.
struct NodeRef
{
    const QDomNode& node;
    DocumentRef document;
};

} // namespace kelxml::qt
