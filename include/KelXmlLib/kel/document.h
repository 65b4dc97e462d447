/// \file
/// Documents. KelXmlLib/kel.h includes this header.

#pragma once

#include "KelXmlLib/kel/element.h"
#include "KelXmlLib/kel/errors.h"

#include <cstddef>
#include <filesystem>

namespace kel
{

/// A value that refers to a document. A copy of the value refers to the same document; `clone` copies the
/// document itself.
class KEL_EXPORT Document : public Container
{
public:
    /// Creates an empty document. `root` returns null until an element is appended to the document. To give
    /// the document an XML declaration, call `appendInstruction` with the target `xml` before you append
    /// anything else.
    Document();
    /// Creates a document with a root element.
    /// \param rootName the tag name of the root element
    /// \throw Error if the name is invalid
    explicit Document(TextView rootName);
    /// Refers to the document of a COM object. Changes through the COM object are visible through this value,
    /// and changes through this value are visible through the COM object.
    /// \throw Error if the COM object belongs to another library
    explicit Document(IXMLDOMDocument& document);

    /// Reads a document from a file.
    /// \param path the path of the file, in UTF-8
    /// \throw LoadError if the file cannot be read or parsed
    static Document load(const std::filesystem::path& path);
    /// Reads a document from a text.
    /// \param text the XML text, in UTF-8 or wide. The encoding in the XML declaration is ignored, and so is
    ///        a leading byte order mark.
    /// \throw LoadError if the text cannot be parsed
    static Document parse(TextView text);

    /// \return the root element; null if the document has no root element
    Element root() const;

    /// Writes the document to a file, in the encoding that the document's XML declaration names. If the
    /// document names no encoding, or one that Qt does not know, the file is in UTF-8. An existing file is
    /// replaced only once the new file is complete. The new file gets the permissions of the existing file.
    /// If the system does not allow all of them, the new file gets fewer, never more. If `path` names a
    /// device, a pipe or an open descriptor such as /dev/stdout, the document is written to it directly. If
    /// `path` is a symbolic link, the target of the link is replaced, and the link stays. Other hard links to
    /// the existing file keep the old content. If the process has no permission to create a file in the
    /// directory, the existing file is overwritten in place.
    /// \param path the path of the file, in UTF-8
    /// \param options how to write the document
    /// \throw SaveError if this value is null, if the document has no root element, or if the file cannot be
    ///        written. An existing file is then unchanged, unless the failure happened while the existing
    ///        file was overwritten in place.
    void save(const std::filesystem::path& path, const SaveOptions& options = {}) const;

    /// Copies the document with all its nodes. The document type is copied without its public and system
    /// identifiers. \return the new document; null if this value is null
    Document clone() const;
    /// Creates a COM object for this document. \return a pointer that owns the COM object; null if this value
    /// is null
    ComPtr<IXMLDOMDocument> get() const;

private:
    friend struct detail::Access;
    explicit Document(std::nullptr_t) noexcept {}
};

} // namespace kel
