// A node as an object of ours presents it, with the document handle that goes with it.

#pragma once

#include <QtXml/QDomDocument>
#include <memory>

namespace kelxml::qt
{

/// The document handle that an object carries on to every object reached from it. The handle of a document
/// that was never loaded is null; nodes of other documents can be reached from there all the same, and for
/// those a document that is alive stands in.
struct DocumentRef
{
    const QDomDocument& handle;
    const QDomDocument* standIn = nullptr; ///< looked at only where `handle` is null; may be null itself

    /// A document that lives as long as the object does, for Qt to refer to.
    const QDomDocument& living() const { return handle.isNull() && standIn ? *standIn : handle; }
    /// The same handle, with `other` to stand in where there is no document yet.
    DocumentRef orElse(const DocumentRef& other) const
    {
        return {handle, living().isNull() ? &other.living() : standIn};
    }
    /// What an object keeps beside the handle.
    std::unique_ptr<const QDomDocument> keptStandIn() const
    {
        return handle.isNull() ? std::make_unique<const QDomDocument>(living()) : nullptr;
    }
};

/// Borrowed from an object for the time of a call.
struct NodeRef
{
    const QDomNode& node;
    DocumentRef document;
};

} // namespace kelxml::qt
