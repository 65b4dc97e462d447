// A node together with the document that its object carries.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>

namespace kelxml::qt
{

/// The document handle that an object passes on to every object reached from it. It is null for a document
/// that was never loaded. Nodes of other documents can be reached from there too; a stand-in gives those a
/// living document.
struct DocumentRef
{
    const QDomDocument& handle;
    const QDomDocument* standIn = nullptr; ///< used only if `handle` is null; may be null itself

    /// A document that lives as long as the object, for Qt to point to.
    const QDomDocument& living() const { return handle.isNull() && standIn ? *standIn : handle; }
    /// The same handle, with `other` as the stand-in if there is no document yet.
    DocumentRef orElse(const DocumentRef& other) const
    {
        return {handle, living().isNull() ? &other.living() : standIn};
    }
    /// What an object must keep in addition to the handle.
    std::unique_ptr<const QDomDocument> keptStandIn() const
    {
        return handle.isNull() ? std::make_unique<const QDomDocument>(living()) : nullptr;
    }
};

/// Borrowed from an object for the duration of a call.
struct NodeRef
{
    const QDomNode& node;
    DocumentRef document;
};

} // namespace kelxml::qt
