/// \file
/// Documents. Included by KelXmlLib/kel.h.

#pragma once

#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"

#include <cstddef>
#include <filesystem>

namespace kel
{

/// A document. Copies refer to the same one.
class KEL_EXPORT Document : public Container
{
public:
    /// An empty document: its `root` is null until an element is appended. It has an XML declaration only if
    /// an instruction `xml` is appended first.
    Document();
    /// A document with a root element. \param rootName its tag name. \throw Error if the name is invalid
    explicit Document(TextView rootName);
    /// The document behind an interface. Both see the same tree.
    /// \throw Error for an object of another library
    explicit Document(IXMLDOMDocument& document);

    /// Reads a file.
    /// \param path in UTF-8
    /// \throw LoadError
    static Document load(const std::filesystem::path& path);
    /// Reads a text. \param text UTF-8 or wide; a declared encoding is ignored. \throw LoadError
    static Document parse(TextView text);

    /// \return the root element; null for an empty document
    Element root() const;

    /// Writes the document to a file, encoded as its XML declaration says. An existing file is replaced only
    /// once the new one is complete; its permissions and symbolic links stay, and other hard links keep the
    /// old one. If the directory accepts no new file, an existing one is overwritten in place.
    /// \param path in UTF-8
    /// \param options see `SaveOptions`
    /// \throw SaveError, also for an empty document, which leaves an existing file unchanged
    void save(const std::filesystem::path& path, const SaveOptions& options = {}) const;

    /// As `Node::clone`.
    Document clone() const;
    /// A new object over the same document. \return null for null
    ComPtr<IXMLDOMDocument> get() const;

private:
    friend struct detail::Access;
    explicit Document(std::nullptr_t) noexcept {}
};

} // namespace kel
