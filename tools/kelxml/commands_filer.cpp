// Writing with the filer: `write`, a catalogue with every kind of content, and `export`, a document copied
// node by node.

#include "KelXmlLib/filer.h"

#include "commands.h"
#include "files.h"
#include "nodes.h"

#include <QtCore/QFile>
#include <QtCore/QXmlStreamReader>

#include <iostream>

namespace host
{
namespace
{

/// A filer on a file, by the export that makes it; what it answers is checked.
class Filer
{
public:
    Filer(const Library& library, const std::wstring& path, bool isPlain)
    {
        m_filer.reset(library.symbol<decltype(morvCreateXmlFiler)>("morvCreateXmlFiler")(
            path.c_str(), KelXmlLib::eEncodingUtf8, 0, !isPlain, false, nullptr, nullptr));
        if (!m_filer)
            throw Failure("the library has no writer for this file");
    }

    void begin() { check(m_filer->writeDocBegin()); }
    void end()
    {
        check(m_filer->writeDocEnd());
        check(m_filer->flush());
        check(m_filer->close());
    }
    void beginElement(const std::wstring& name) { check(m_filer->writeElmBegin(name.c_str())); }
    void endElement() { check(m_filer->writeElmEnd()); }
    void element(const std::wstring& name, const std::wstring& text)
    {
        check(m_filer->writeElmBegin(name.c_str(), text.c_str()));
    }
    void attribute(const std::wstring& name, const std::wstring& value)
    {
        check(m_filer->writeAttribute(name.c_str(), value.c_str()));
    }
    void text(const std::wstring& text) { check(m_filer->writeText(text.c_str())); }
    void rawText(const std::wstring& text) { check(m_filer->writeRawText(text.c_str())); }
    void cdata(const std::wstring& text) { check(m_filer->writeCData(text.c_str())); }
    void comment(const std::wstring& text) { check(m_filer->writeComment(text.c_str())); }

private:
    static void check(KelXmlLib::eStatus status)
    {
        if (status != KelXmlLib::eStatusAccepted)
            throw Failure("the library refuses to write a name or a text of the document");
    }

    std::unique_ptr<IKelXmlFiler> m_filer;
};

/// Copies a document, and counts.
class Exporter
{
public:
    Exporter(const Library& library, Filer& filer) : m_library(library), m_filer(filer) {}

    void writeChildren(IXMLDOMNode& parent)
    {
        for (const Node& child : kel::childrenOf(parent))
            if (write(*child))
                ++m_written;
            else
                ++m_leftOut;
    }
    std::size_t written() const { return m_written; }
    std::size_t leftOut() const { return m_leftOut; }

private:
    /// \return whether the filer has an operation for the node
    bool write(IXMLDOMNode& node)
    {
        switch (typeOf(node)) {
        case NODE_ELEMENT:
            writeElement(node);
            return true;
        case NODE_TEXT:
            return writeContent(node, &Filer::text);
        case NODE_CDATA_SECTION:
            return writeContent(node, &Filer::cdata);
        case NODE_COMMENT:
            return writeContent(node, &Filer::comment);
        case NODE_PROCESSING_INSTRUCTION:
            return nameOf(node) == L"xml"; // the declaration, which the filer has written
        default:
            return false;
        }
    }

    void writeElement(IXMLDOMNode& node)
    {
        m_filer.beginElement(nameOf(node));
        for (const AttributeText& attribute : attributesOf(m_library, node))
            m_filer.attribute(attribute.name, attribute.value);
        writeChildren(node);
        m_filer.endElement();
    }

    /// The filer refuses empty content.
    bool writeContent(IXMLDOMNode& node, void (Filer::*operation)(const std::wstring&))
    {
        const std::wstring value = valueOf(node);
        if (value.empty())
            return false;
        (m_filer.*operation)(value);
        return true;
    }

    const Library& m_library;
    Filer& m_filer;
    std::size_t m_written = 0;
    std::size_t m_leftOut = 0;
};

void writeCatalogue(Filer& filer)
{
    filer.begin();
    filer.comment(L" every kind of content that the filer writes ");
    filer.beginElement(L"catalogue");
    filer.attribute(L"name", L"Gr\u00FC\u00DFe & \"quotes\" <here>");
    filer.attribute(L"remark", L"");
    filer.element(L"title", L"a whole element, 1 < 2");
    filer.beginElement(L"entry");
    filer.attribute(L"id", L"1");
    filer.text(L"text & markup, escaped: <b>");
    filer.beginElement(L"empty");
    filer.endElement();
    filer.rawText(L"<raw/> is escaped as well");
    filer.endElement();
    filer.beginElement(L"entry");
    filer.attribute(L"id", L"2");
    filer.cdata(L"if (a < b && c > d) { }");
    filer.comment(L" beyond the basic plane follows ");
    filer.element(L"sign", L"\U0001F333\U0001D11E");
    filer.end();
}

/// The document's children do not tell.
bool hasDocumentType(const std::wstring& place)
{
    QFile file(QString::fromStdWString(place));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    while (!reader.atEnd() && !reader.isDTD() && !reader.isStartElement())
        reader.readNext();
    return reader.isDTD();
}

/// Saves what `write` gives to a filer.
template <class Write>
void saveFiled(const Library& library, const std::wstring& path, bool isPlain, Write write)
{
    saveBy(library, path, [&](const std::wstring& place) {
        Filer filer(library, place, isPlain);
        write(filer);
        return true;
    });
}

} // namespace

void runWrite(const Library& library, const Arguments& arguments)
{
    saveFiled(library, arguments.values[0], arguments.isPlain, writeCatalogue);
}

void runExport(const Library& library, const Arguments& arguments)
{
    const auto document = library.newDocument();
    bool isTyped = false;
    loadBy(library, arguments.values[0], [&](const std::wstring& place) {
        isTyped = hasDocumentType(place);
        return loadFrom(*document, place);
    });
    const std::wstring& path = arguments.values[1];
    std::size_t written = 0;
    std::size_t leftOut = 0;
    saveFiled(library, path, arguments.isPlain, [&](Filer& filer) {
        filer.begin();
        Exporter exporter(library, filer);
        exporter.writeChildren(*document);
        filer.end();
        written = exporter.written();
        leftOut = exporter.leftOut() + (isTyped ? 1 : 0);
    });
    reportBeside(path) << written << (written == 1 ? " node" : " nodes") << " written, " << leftOut
                       << " left out, which cannot be written this way\n";
}

} // namespace host
