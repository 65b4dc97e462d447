// References to a node and to the document that owns the node.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>

namespace kelxml::qt
{

/// Refers to the document that an object keeps alive. The object is a COM object or a value of the C++ layer.
/// Objects that a caller gets from this object keep the same document alive, with one exception.
///
/// The exception: if the document has neither loaded nor created anything, `handle` is null. If the caller
/// then passes a node of another document to `appendChild` or `removeChild` of this object, the call changes
/// no tree, but returns a new object for the passed node. The new object also has a null `handle`, and keeps
/// the other document alive as its `fallback`.
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
    /// Returns what an object must store in addition to `handle` to keep the document alive: a copy of
    /// `handleOrFallback()` if `handle` is null, otherwise nothing (null).
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
