/// \file
/// A writer that builds no tree. KelXmlLib/kel.h includes this header.

#pragma once

#include "KelComWrapper/export.h"
#include "KelXmlLib/kel/text.h"

#include <cstddef>
#include <filesystem>
#include <memory>

namespace kel
{

/// Writes one XML file from start to end. The file is in UTF-8 and begins with an XML declaration.
///
/// - In wide text, a lone surrogate or a character above U+10FFFF is written as U+FFFD. A name with such a
///   character is invalid.
/// - A call that receives any other character that XML does not allow, or invalid UTF-8, throws `Error`.
/// - A call that cannot write to the file throws `SaveError`. Every later call throws too.
/// - In a comment, a CDATA section or an instruction, a carriage return is written unchanged. Most parsers
///   read it as a line feed. In texts and attributes, a carriage return is written as a character reference,
///   which parsers read as a carriage return.
class KEL_EXPORT Writer
{
    struct State;

public:
    /// An open element. The destructor closes the element, and all open elements inside this element.
    class KEL_EXPORT Element
    {
    public:
        /// Moves the element to the new object. The destructor of the new object then closes the element. The
        /// destructor of `other` does nothing.
        Element(Element&& other) noexcept = default;
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        ~Element();

        /// Writes an attribute.
        /// \param name the attribute's name
        /// \param value a text, a number or `bool`
        /// \return this element, so that you can write the next attribute
        /// \throw Error if the name is invalid, if `value` is an invalid text, if the element already has an
        ///        attribute of that name, if the element already has content, or if the element is closed
        Element& attribute(TextView name, const Value& value);

    private:
        friend class Writer;
        Element(std::shared_ptr<State> state, std::size_t serial) noexcept;

        std::shared_ptr<State> m_state;
        std::size_t m_serial;
    };

    /// Starts a new file. `close` replaces any existing file at `path` with the new file, in the same way as
    /// `Document::save`. The new file gets the permissions that the existing file has at this time. If a
    /// write fails before `close` begins to replace the existing file, the existing file stays unchanged.
    /// \param path the path of the file, in UTF-8
    /// \param indent whether each element begins on a new line, indented by four spaces per level
    /// \throw SaveError if the new file cannot be created
    explicit Writer(const std::filesystem::path& path, bool indent = true);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    /// Calls `close`, but ignores its errors. To get the errors, call `close` yourself. If an exception is
    /// unwinding the stack, discards the new file instead of calling `close`.
    ~Writer();

    /// Begins the root element, or an element inside the innermost open element.
    /// \return an object whose destructor closes the element
    /// \throw Error if the name is invalid, if the root element is already closed, or if the file is closed
    Element element(TextView name);
    /// Writes an element that contains only a text, and closes the element.
    /// \throw Error in the same cases as `element(name)`, and if the text is invalid
    void element(TextView name, const Value& text);
    /// Writes a text. \throw Error if no element is open, or if the text is invalid
    void text(const Value& text);
    /// Writes a CDATA section. Splits a text that contains `]]>` into several CDATA sections.
    /// \throw Error if no element is open, or if the text is invalid
    void cdata(TextView text);
    /// Writes a comment. The comment may be before, in or after the root element.
    /// \param text must not contain two hyphens in a row, and must not end in a hyphen
    /// \throw Error if the text is invalid, or if the file is closed
    void comment(TextView text);
    /// Writes a processing instruction. The instruction may be before, in or after the root element.
    /// \param target the instruction's name; must not be `xml`, in upper or lower case
    /// \param data must not contain `?>`
    /// \throw Error if the target or the data is invalid, or if the file is closed
    void instruction(TextView target, TextView data);

    /// Closes all open elements, closes the new file, and replaces any existing file with the new file. Does
    /// nothing if an earlier call of `close` has succeeded.
    /// \throw SaveError if the file could not be written completely, for example because the disk is full
    /// \throw Error if no root element was written
    void close();

private:
    std::shared_ptr<State> m_state;
};

} // namespace kel
