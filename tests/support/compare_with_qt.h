// Loads and saves documents both through the library and with Qt alone, and compares the results.

#pragma once

#include "support/call_machine_objects.h"
#include "support/saved_by_qt.h"

#include <QtCore/QTemporaryFile>

/// Saves a document through the library. \return the saved bytes
inline std::string saved(IXMLDOMDocument& document)
{
    QTemporaryFile file;
    require(file.open(), "the test can create a temporary file");
    const kel::Variant path(file.fileName().toStdWString());
    requireOk(document.save(path.get()), "save");
    return file.readAll().toStdString();
}

/// Loads the same content into `theirs` with Qt and into `ours` with the library. Both documents must accept
/// the content or both must refuse it, and both must save the same bytes.
/// \param load loads the content into the given document of the library and sets the given success flag
/// \param content the content in a type that Qt loads
/// \param isWithinLimits if false, the library must refuse the content, and the content is not loaded with Qt
/// \return whether the content was loaded
template <class Load, class Content>
bool loadAndCompareWithQt(QDomDocument& theirs, IXMLDOMDocument& ours, Load load, Content&& content,
                          bool isWithinLimits = true)
{
    const bool isLoaded = isWithinLimits && theirs.setContent(content);
    VARIANT_BOOL success = 7;
    requireOk(load(ours, &success), "the load that Qt also did", isLoaded);
    requireEqual<int>(success, isLoaded ? VARIANT_TRUE : VARIANT_FALSE, "the success flag equals the result");
    requireEqual(saved(ours), savedByQt(theirs).toStdString(), "the library saves the bytes that Qt saves");
    return isLoaded;
}

struct Extent
{
    int depth = 0;     ///< number of levels of nested elements
    qint64 length = 0; ///< number of characters in the values of all nodes
};

/// The extent of a node and everything below it.
inline Extent extentOf(const QDomNode& node)
{
    Extent extent{0, node.nodeValue().size()};
    const QDomNamedNodeMap attributes = node.attributes();
    for (int index = 0; index < attributes.length(); ++index)
        extent.length += attributes.item(index).nodeValue().size();
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const Extent below = extentOf(child);
        extent.depth = std::max(extent.depth, below.depth);
        extent.length += below.length;
    }
    extent.depth += node.isElement() ? 1 : 0;
    return extent;
}
