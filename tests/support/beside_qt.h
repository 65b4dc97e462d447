// Documents that both the library and Qt alone load and save, compared.

#pragma once

#include "support/bytes_of_qt.h"
#include "support/call_machine_objects.h"

#include <QtCore/QTemporaryFile>

/// What `save` writes.
inline std::string saved(IXMLDOMDocument& document)
{
    QTemporaryFile file;
    require(file.open(), "a temporary file can be made");
    const kel::Variant path(file.fileName().toStdWString());
    requireEqual(document.save(path.get()), S_OK, "save");
    return file.readAll().toStdString();
}

/// Expects the same verdict, flag and saved bytes from both. \return the verdict
/// \param load loads into the document given, with the flag given
/// \param content passed to Qt
/// \param isWithin whether it is within the limits, so that it must be loaded
template <class Load, class Content>
bool loadBeside(QDomDocument& theirs, IXMLDOMDocument& ours, Load load, Content&& content,
                bool isWithin = true)
{
    const bool isLoaded = isWithin && theirs.setContent(content);
    VARIANT_BOOL success = 7;
    requireEqual(load(ours, &success), isLoaded ? S_OK : S_FALSE, "a load succeeds where Qt's does");
    requireEqual(success, isLoaded ? VARIANT_TRUE : VARIANT_FALSE, "the success flag says the same");
    requireEqual(saved(ours), bytesOfQt(theirs).toStdString(), "save writes what Qt writes");
    return isLoaded;
}

struct Extent
{
    int depth = 0; ///< how many elements are nested
    qint64 length = 0;
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
