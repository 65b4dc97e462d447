/// \file
/// Writes an XML file without a tree. Included by KelXmlLib/kel.h.

#pragma once

#include "KelComWrapper/export.h"
#include "KelXmlLib/kel/text.h"

#include <cstddef>
#include <filesystem>
#include <memory>

namespace kel
{

/// Writes one XML file from start to end, in UTF-8 and with an XML declaration.
///
/// - A wide character that is half a surrogate pair or above U+10FFFF is written as U+FFFD.
/// - Once writing the file has failed, every call throws `SaveError`.
/// - Invalid UTF-8 throws `Error`, and so do characters that XML does not allow.
/// - A carriage return in a comment, a CDATA section or an instruction is written as it is, and most parsers
///   read it as a line feed. In texts and attributes, it is written so that parsers keep it.
class KEL_EXPORT Writer
{
    struct State;

public:
    /// An open element. The destructor closes the element, and with it all open elements inside.
    class KEL_EXPORT Element
    {
    public:
        /// Moves the element. From then on, the new object closes it, and not `other`.
        Element(Element&& other) noexcept = default;
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        ~Element();

        /// Writes an attribute.
        /// \param name the attribute's name
        /// \param value a text, a number or `bool`
        /// \return this element, for the next attribute
        /// \throw Error if the name or the text is invalid, if the element already has that attribute, or if
        ///        the element already has content or is closed
        Element& attribute(TextView name, const Value& value);

    private:
        friend class Writer;
        Element(std::shared_ptr<State> state, std::size_t serial) noexcept;

        std::shared_ptr<State> m_state;
        std::size_t m_serial;
    };

    /// Starts a new file. `close` puts it in the place of an existing file, in the same way as
    /// `Document::save`. If a write has failed, the existing file stays.
    /// \param path in UTF-8
    /// \param indent whether to begin each element on a new line, indented by four spaces a level
    /// \throw SaveError
    explicit Writer(const std::filesystem::path& path, bool indent = true);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    /// Calls `close`, but reports no errors: call `close` yourself to get them. If an exception is unwinding
    /// the stack, discards the new file instead.
    ~Writer();

    /// Begins an element inside the innermost open element.
    /// \return the element, which is closed when the returned object is destroyed
    /// \throw Error if the name is invalid, if the root element is already closed, or after `close`
    Element element(TextView name);
    /// Writes an element with a text, and closes it.
    /// \throw Error in the same cases as `element(name)`, and if the text is invalid
    void element(TextView name, const Value& text);
    /// Writes a text. \throw Error if no element is open or the text is invalid
    void text(const Value& text);
    /// Writes a CDATA section. Begins a new section wherever the text contains `]]>`.
    /// \throw Error if no element is open or the text is invalid
    void cdata(TextView text);
    /// Writes a comment. It may be before, in or after the root element.
    /// \param text must not contain two hyphens in a row, or end in a hyphen
    /// \throw Error if the text is invalid, or after `close`
    void comment(TextView text);
    /// Writes a processing instruction. It may be before, in or after the root element.
    /// \param target the instruction's name; must not be `xml`
    /// \param data must not contain `?>`
    /// \throw Error if the name or the text is invalid, or after `close`
    void instruction(TextView target, TextView data);

    /// Closes all open elements and the file, which then replaces any existing file. Does nothing when called
    /// again.
    /// \throw SaveError if the file could not be written completely, for example because the disk is full;
    ///        Error if there is no root element
    void close();

private:
    std::shared_ptr<State> m_state;
};

} // namespace kel
