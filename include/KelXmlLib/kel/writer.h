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

/// Writes one XML file from start to end: UTF-8, with a declaration, indented. Wide units that are not
/// characters (half a surrogate pair, above U+10FFFF) are written as U+FFFD. Invalid texts throw: UTF-8 that
/// is not valid, and characters that XML does not allow. Parsers read a carriage return in a comment, CDATA
/// section or instruction as a line feed.
class KEL_EXPORT Writer
{
    struct State;

public:
    /// An element that is being written; it is closed when this goes out of scope. Closing an element closes
    /// all open elements in it.
    class KEL_EXPORT Element
    {
    public:
        /// Moves the duty to close the element to the new object.
        Element(Element&& other) noexcept = default;
        Element(const Element&) = delete;
        Element& operator=(const Element&) = delete;
        ~Element();

        /// Writes an attribute.
        /// \param name of the attribute
        /// \param value a text, a number or `bool`
        /// \return this element, for the next attribute
        /// \throw Error for an invalid name, for one that was written before, for an invalid text, and once
        ///        the element has content or is closed
        Element& attribute(TextView name, const Value& value);

    private:
        friend class Writer;
        Element(std::shared_ptr<State> state, std::size_t serial) noexcept;

        std::shared_ptr<State> m_state;
        std::size_t m_serial;
    };

    /// Starts a new file. Closing the writer replaces an existing file, as `Document::save` does, unless a
    /// write failed.
    /// \param path in UTF-8
    /// \param indent whether every element begins on a line of its own
    /// \throw SaveError
    explicit Writer(const std::filesystem::path& path, bool indent = true);
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    /// Closes the writer, or discards the new file while an exception unwinds. Errors are not reported: call
    /// `close` to see them.
    ~Writer();

    /// Begins an element in the innermost open one.
    /// \throw Error for an invalid name, for a second root element, and after `close`
    Element element(TextView name);
    /// Writes a whole element that holds a text. \throw Error as above, and for an invalid text
    void element(TextView name, const Value& text);
    /// Writes a text. \throw Error outside the root element, and for an invalid text
    void text(const Value& text);
    /// Writes a CDATA section, or several if the text contains `]]>`. \throw Error as `text`
    void cdata(TextView text);
    /// Writes a comment, also before and after the root element. \param text without two hyphens in a row,
    /// and not ending in one
    void comment(TextView text);
    /// Writes a processing instruction, also before and after the root element.
    /// \param target its name
    /// \param data must not contain `?>`
    void instruction(TextView target, TextView data);

    /// Closes all open elements and the file. Does nothing when called again.
    /// \throw SaveError when the file is not complete, such as on a full disk; Error without a root element
    void close();

private:
    std::shared_ptr<State> m_state;
};

} // namespace kel
