// The writer: Qt writes to a string, which goes to a new file in pieces. The new file replaces the old one
// once it is complete.

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
        text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    }

    /// \throw Error unless an element is open
    void requireElement(const char* action) const
    {
        requireFile(action);
        if (open.empty())
            detail::refuse(action, "no element is open");
    }

    void requireFile(const char* action) const
    {
        if (isClosed)
            detail::refuse(action, "the file is closed");
    }

    /// Calls Qt's writer and passes on its output. After a failure every call fails, because a part of the
    /// file is missing.
    template <class Write>
    void change(Write write)
    {
        if (failure)
            std::rethrow_exception(failure);
        try {
            write(writer);
            constexpr int kPiece = 32 * 1024;
            if (text.size() >= kPiece)
                flush();
        } catch (...) {
            failure = std::current_exception();
            throw;
        }
    }

    void flush()
    {
        file.write(text.toUtf8());
        text.truncate(0);
    }

    std::size_t begin(TextView name)
    {
        constexpr const char* kAction = "writing an element";
        requireFile(kAction);
        if (open.empty() && serials > 0)
            detail::refuse(kAction, detail::reason::kSecondRoot);
        const QString tagName = detail::toName(name);
        change([&](QXmlStreamWriter& to) {
            open.push_back(++serials);
            to.writeStartElement(tagName);
        });
        isInStartTag = true;
        attributes.clear();
        return serials;
    }

    /// Writes content of the innermost element.
    template <class Write>
    void put(Write write)
    {
        isInStartTag = false;
        change(write);
    }

    /// A parser would turn a plain carriage return into a line feed.
    void putText(const QString& content)
    {
        put([&](QXmlStreamWriter& to) {
            int start = 0;
            for (int end = 0; (end = content.indexOf(u'\r', start)) >= 0; start = end + 1) {
                to.writeCharacters(content.mid(start, end - start));
                to.writeEntityReference(QLatin1String("#xd"));
            }
            to.writeCharacters(start == 0 ? content
                                          : content.mid(start)); // last: Qt indents after references
        });
    }

    bool isOpen(std::size_t serial) const { return std::binary_search(open.begin(), open.end(), serial); }

    /// Ends an element and all open elements in it.
    void end(std::size_t serial)
    {
        put([&](QXmlStreamWriter& to) {
            for (; isOpen(serial); open.pop_back())
                to.writeEndElement();
        });
    }

    void close()
    {
        if (isClosed)
            return;
        if (serials == 0)
            detail::refuse("closing a file", "it has no root element");
        put([&](QXmlStreamWriter& to) {
            to.writeEndDocument();
            flush();
            file.commit();
        });
        discard();
    }

    void discard() noexcept
    {
        isClosed = true;
        open.clear();
    }

    detail::SavedFile file;
    QString text;
    QXmlStreamWriter writer{&text};
    std::vector<std::size_t> open; ///< serial numbers of elements, ascending
    std::size_t serials = 0;
    bool isInStartTag = false;
    QSet<QString> attributes; ///< of the element whose start tag is being written
    bool isClosed = false;
    std::exception_ptr failure;
    const int exceptions = std::uncaught_exceptions();
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
    } catch (...) { // `close` throws it again
    }
}

Writer::Element& Writer::Element::attribute(TextView name, const Value& value)
{
    constexpr const char* kAction = "writing an attribute";
    const QString text = detail::toCharacters(value.text());
    const QString attributeName = detail::toName(name);
    State& state = *m_state;
    if (state.open.empty() || state.open.back() != m_serial || !state.isInStartTag)
        detail::refuse(kAction, "the element has content or is closed");
    if (state.attributes.contains(attributeName))
        detail::refuse(kAction, "the element has it already");
    state.attributes.insert(attributeName);
    state.change([&](QXmlStreamWriter& to) { to.writeAttribute(attributeName, text); });
    return *this;
}

Writer::Writer(const std::filesystem::path& path, bool indent)
    : m_state(std::make_shared<State>(path, indent))
{}

Writer::~Writer()
{
    try {
        if (std::uncaught_exceptions() == m_state->exceptions)
            m_state->close();
    } catch (...) { // a call of `close` would report it
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
        m_state->putText(content);
    m_state->end(serial);
}

void Writer::text(const Value& text)
{
    m_state->requireElement("writing a text");
    const QString content = detail::toCharacters(text.text());
    m_state->putText(content);
}

void Writer::cdata(TextView text)
{
    m_state->requireElement("writing a CDATA section");
    const QString content = detail::toCharacters(text);
    m_state->put([&](QXmlStreamWriter& to) { to.writeCDATA(content); });
}

void Writer::comment(TextView text)
{
    constexpr const char* kAction = "writing a comment";
    m_state->requireFile(kAction);
    const QString content = detail::toCharacters(text);
    detail::requireComment(content, kAction);
    m_state->put([&](QXmlStreamWriter& to) { to.writeComment(content); });
}

void Writer::instruction(TextView target, TextView data)
{
    constexpr const char* kAction = "writing an instruction";
    m_state->requireFile(kAction);
    const QString name = detail::toName(target);
    const QString content = detail::toCharacters(data);
    detail::requireWithout("?>", content, kAction, detail::reason::kInstruction);
    if (detail::isDeclaration(name)) // the writer has written one
        detail::refuse(kAction, detail::reason::kDeclaration);
    m_state->put([&](QXmlStreamWriter& to) { to.writeProcessingInstruction(name, content); });
}

void Writer::close()
{
    m_state->close();
}

} // namespace kel
