// Writes XML with Qt's writer. Qt writes into a buffer, and `flush` passes the buffer's content to `file`.

#include "KelXmlLib/kel/writer.h"

#include "layer/refuse.h"
#include "layer/saving.h"
#include "layer/text.h"

#include <QtCore/QSet>
#include <QtCore/QXmlStreamWriter>
#include <algorithm>
#include <exception>
#include <vector>

namespace kel
{

struct Writer::State
{
    State(const std::filesystem::path& path, bool indent) : file(path.native())
    {
        writer.setAutoFormatting(indent);
        buffer = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    }

    /// \throw Error if no element is open
    void requireElement(const char* action) const
    {
        requireFile(action);
        if (open.empty())
            detail::refuse(action, "no element is open");
    }

    /// \throw Error if the file is closed
    void requireFile(const char* action) const
    {
        if (isClosed)
            detail::refuse(action, "the file is closed");
    }

    /// Calls Qt's writer, and flushes the buffer if the buffer is full. After one call has failed, every
    /// later call throws the same exception, because a part of the file is missing.
    template <class Write>
    void callWriter(Write write)
    {
        if (failure)
            std::rethrow_exception(failure);
        try {
            write(writer);
            constexpr int kBufferSize = 32 * 1024;
            if (buffer.size() >= kBufferSize)
                flush();
        } catch (...) {
            failure = std::current_exception();
            throw;
        }
    }

    void flush()
    {
        file.write(buffer.toUtf8());
        buffer.truncate(0); // keeps the memory
    }

    std::size_t begin(TextView name)
    {
        constexpr const char* kAction = "writing an element";
        requireFile(kAction);
        if (open.empty() && lastSerial > 0)
            detail::refuse(kAction, detail::reason::kSecondRoot);
        const QString tagName = detail::toName(name);
        callWriter([&](QXmlStreamWriter& to) {
            open.push_back(++lastSerial);
            to.writeStartElement(tagName);
        });
        isInStartTag = true;
        attributes.clear();
        return lastSerial;
    }

    /// Calls Qt's writer to write anything except a start tag or an attribute. If a start tag is open, Qt's
    /// writer first completes the tag, and the element can then get no more attributes.
    template <class Write>
    void writeContent(Write write)
    {
        isInStartTag = false;
        callWriter(write);
    }

    /// Writes a text. Writes each carriage return as a character reference, because parsers read a plain
    /// carriage return as a line feed.
    void writeText(const QString& content)
    {
        writeContent([&](QXmlStreamWriter& to) {
            int start = 0;
            for (int end = 0; (end = content.indexOf(u'\r', start)) >= 0; start = end + 1) {
                to.writeCharacters(content.mid(start, end - start));
                to.writeEntityReference(QLatin1String("#xd"));
            }
            // This call is needed even if no text is left: without it, Qt would indent an end tag that
            // follows a reference.
            to.writeCharacters(start == 0 ? content : content.mid(start));
        });
    }

    bool isOpen(std::size_t serial) const { return std::binary_search(open.begin(), open.end(), serial); }

    /// Ends an element and all open elements inside this element.
    void end(std::size_t serial)
    {
        writeContent([&](QXmlStreamWriter& to) {
            for (; isOpen(serial); open.pop_back())
                to.writeEndElement();
        });
    }

    void close()
    {
        if (isClosed)
            return;
        if (lastSerial == 0)
            detail::refuse("closing a file", "the file has no root element");
        writeContent([&](QXmlStreamWriter& to) {
            to.writeEndDocument();
            flush();
            file.commit();
        });
        discard();
    }

    /// After this, every call that writes fails. If `file` was not committed, the destructor of `file`
    /// discards the new file.
    void discard() noexcept
    {
        isClosed = true;
        open.clear();
    }

    detail::SavedFile file;
    QString buffer;
    QXmlStreamWriter writer{&buffer};
    std::vector<std::size_t> open; ///< the serial numbers of the open elements, ascending
    std::size_t lastSerial = 0;    ///< the number of elements begun so far
    bool isInStartTag = false;     ///< whether the innermost element can still get attributes
    QSet<QString> attributes;      ///< the names of the attributes that the innermost element has so far
    bool isClosed = false;
    std::exception_ptr failure; ///< the first failure
    const int exceptionsAtStart = std::uncaught_exceptions();
};

Writer::Element::Element(std::shared_ptr<State> state, std::size_t serial) noexcept
    : m_state(std::move(state)), m_serial(serial)
{}

Writer::Element::~Element()
{
    if (!m_state || !m_state->isOpen(m_serial))
        return;
    try {
        m_state->end(m_serial);
    } catch (...) { // a destructor must not throw; `Writer::close` will throw the same exception
    }
}

Writer::Element& Writer::Element::attribute(TextView name, const Value& value)
{
    constexpr const char* kAction = "writing an attribute";
    const QString text = detail::toCharacters(value.text());
    const QString attributeName = detail::toName(name);
    if (!m_state || m_state->open.empty() || m_state->open.back() != m_serial || !m_state->isInStartTag)
        detail::refuse(kAction, "the element has content or is closed");
    State& state = *m_state;
    if (state.attributes.contains(attributeName))
        detail::refuse(kAction, "the element already has this attribute");
    state.attributes.insert(attributeName);
    state.callWriter([&](QXmlStreamWriter& to) { to.writeAttribute(attributeName, text); });
    return *this;
}

Writer::Writer(const std::filesystem::path& path, bool indent)
    : m_state(std::make_shared<State>(path, indent))
{}

Writer::~Writer()
{
    try {
        if (std::uncaught_exceptions() == m_state->exceptionsAtStart)
            m_state->close();
    } catch (...) { // a destructor must not throw
    }
    m_state->discard();
}

Writer::Element Writer::element(TextView name)
{
    return {m_state, m_state->begin(name)};
}

void Writer::element(TextView name, const Value& text)
{
    const QString content = detail::toCharacters(text.text());
    const std::size_t serial = m_state->begin(name);
    if (!content.isEmpty())
        m_state->writeText(content);
    m_state->end(serial);
}

void Writer::text(const Value& text)
{
    m_state->requireElement("writing a text");
    const QString content = detail::toCharacters(text.text());
    m_state->writeText(content);
}

void Writer::cdata(TextView text)
{
    m_state->requireElement("writing a CDATA section");
    const QString content = detail::toCharacters(text);
    m_state->writeContent([&](QXmlStreamWriter& to) { to.writeCDATA(content); });
}

void Writer::comment(TextView text)
{
    constexpr const char* kAction = "writing a comment";
    m_state->requireFile(kAction);
    const QString content = detail::toCharacters(text);
    detail::requireComment(content, kAction);
    m_state->writeContent([&](QXmlStreamWriter& to) { to.writeComment(content); });
}

void Writer::instruction(TextView target, TextView data)
{
    constexpr const char* kAction = "writing an instruction";
    m_state->requireFile(kAction);
    const QString name = detail::toName(target);
    const QString content = detail::toCharacters(data);
    detail::requireWithout("?>", content, kAction, detail::reason::kInstruction);
    if (detail::isDeclaration(name)) // the constructor of `State` has already written the declaration
        detail::refuse(kAction, detail::reason::kDeclaration);
    m_state->writeContent([&](QXmlStreamWriter& to) { to.writeProcessingInstruction(name, content); });
}

void Writer::close()
{
    m_state->close();
}

} // namespace kel
