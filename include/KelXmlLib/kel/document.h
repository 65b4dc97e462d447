/// \file
/// Documents. Included by KelXmlLib/kel.h.

#pragma once

#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"

#include <cstddef>
#include <filesystem>

namespace kel
{

/// A document. Copies refer to the same document.
class KEL_EXPORT Document : public Container
{
public:
    /// Creates an empty document. Its `root` is null until an element is appended. To give it an XML
    /// declaration, append an instruction `xml` first.
    Document();
    /// Creates a document with a root element.
    /// \param rootName the tag name of the root element
    /// \throw Error if the name is invalid
    explicit Document(TextView rootName);
    /// Refers to the document of a COM object. The COM object and this value see each other's changes.
    /// \throw Error if the object belongs to another library
    explicit Document(IXMLDOMDocument& document);

    /// Reads a file.
    /// \param path in UTF-8
    /// \throw LoadError
    static Document load(const std::filesystem::path& path);
    /// Reads a text.
    /// \param text UTF-8 or wide; an encoding in its XML declaration is ignored
    /// \throw LoadError
    static Document parse(TextView text);

    /// \return the root element; null if the document is empty
    Element root() const;

    /// Writes the document to a file, in the encoding that its XML declaration names, or in UTF-8. An
    /// existing file is replaced only once the new file is complete. The new file has the permissions of the
    /// old one. Symbolic links to the file stay. Other hard links to it keep the old content. If no file can
    /// be created in the directory, an existing file is overwritten in place.
    /// \param path in UTF-8
    /// \param options see `SaveOptions`
    /// \throw SaveError, also if the document is empty; an existing file is then unchanged
    void save(const std::filesystem::path& path, const SaveOptions& options = {}) const;

    /// See `Node::clone`.
    Document clone() const;
    /// Creates a COM object for this document. \return a pointer that owns it; null for a null value
    ComPtr<IXMLDOMDocument> get() const;

private:
    friend struct detail::Access;
    explicit Document(std::nullptr_t) noexcept {}
};

} // namespace kel
