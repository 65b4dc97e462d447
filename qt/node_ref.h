// References to a node and to the document that owns it.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>

namespace kelxml::qt
{

/// The document that an object keeps alive and passes on to every object reached from it. `handle` is null if
/// the document was never loaded. If a node of another document is appended to such an object or removed from
/// it, the returned object uses `fallback` to keep the document of that node alive.
struct DocumentRef
{
    const QDomDocument& handle;
    const QDomDocument* fallback = nullptr; ///< used only if `handle` is null; may be null itself

    /// The document that the object keeps alive. Qt's nodes may point to it.
    const QDomDocument& handleOrFallback() const { return handle.isNull() && fallback ? *fallback : handle; }
    /// A copy of this reference. If it has no document yet, the document of `other` becomes its fallback.
    DocumentRef withFallback(const DocumentRef& other) const
    {
        return {handle, handleOrFallback().isNull() ? &other.handleOrFallback() : fallback};
    }
    /// A handle that an object must keep in addition to `handle`; null if `handle` is enough.
    std::unique_ptr<const QDomDocument> copyOfFallback() const
    {
        return handle.isNull() ? std::make_unique<const QDomDocument>(handleOrFallback()) : nullptr;
    }
};

/// The node and document of an object. Refers to the object's members, so use it only during a call.
struct NodeRef
{
    const QDomNode& node;
    DocumentRef document;
};

} // namespace kelxml::qt
