// Loads and saves documents both through the library and with Qt alone, and compares the results.

#pragma once

#include "support/call_machine_objects.h"
#include "support/saved_by_qt.h"

#include <QtCore/QTemporaryFile>

/// The bytes that the library saves.
inline std::string saved(IXMLDOMDocument& document)
{
    QTemporaryFile file;
    require(file.open(), "a test can create a temporary file");
    const kel::Variant path(file.fileName().toStdWString());
    requireEqual(document.save(path.get()), S_OK, "save");
    return file.readAll().toStdString();
}

/// Loads the same content into `theirs` with Qt and into `ours` with the library. Both must accept or refuse
/// it, and save the same bytes. \param load loads into the given document and sets the given success flag
/// \param content the input for Qt
/// \param isWithinLimits if false, the library must refuse the content, and Qt does not load it
/// \return whether it was loaded
template <class Load, class Content>
bool loadAndCompareWithQt(QDomDocument& theirs, IXMLDOMDocument& ours, Load load, Content&& content,
                          bool isWithinLimits = true)
{
    const bool isLoaded = isWithinLimits && theirs.setContent(content);
    VARIANT_BOOL success = 7;
    requireEqual(load(ours, &success), isLoaded ? S_OK : S_FALSE, "the library loads what Qt loads");
    requireEqual(success, isLoaded ? VARIANT_TRUE : VARIANT_FALSE, "the success flag equals the result");
    requireEqual(saved(ours), savedByQt(theirs).toStdString(), "the library saves what Qt saves");
    return isLoaded;
}

struct Extent
{
    int depth = 0;     ///< nested elements
    qint64 length = 0; ///< characters in values
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
