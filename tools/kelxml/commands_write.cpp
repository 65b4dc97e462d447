// Subcommands that write a document through `kel::Writer`, node by node. `write` creates a catalogue that has
// every kind of content that the writer supports. `export` copies a document.

#include "commands.h"
#include "files.h"

#include <iostream>

namespace tool
{
namespace
{

/// Copies the nodes of a document to a writer. Counts the copied nodes and the nodes that are left out.
class Exporter
{
public:
    explicit Exporter(kel::Writer& writer) : m_writer(writer) {}

    template <class Parent>
    void writeChildren(const Parent& parent)
    {
        for (const kel::Node& child : parent.nodes())
            ++(write(child) ? m_written : m_leftOut);
    }
    std::size_t written() const { return m_written; }
    std::size_t leftOut() const { return m_leftOut; }

private:
    /// \return false if the writer does not support this kind of node
    bool write(const kel::Node& node)
    {
        switch (node.kind()) {
        case kel::NodeKind::element:
            writeElement(kel::Element(node));
            return true;
        case kel::NodeKind::text:
            m_writer.text(node.text());
            return true;
        case kel::NodeKind::cdata:
            m_writer.cdata(node.text());
            return true;
        case kel::NodeKind::comment:
            m_writer.comment(node.text());
            return true;
        case kel::NodeKind::instruction:
            if (node.name() != "xml") // the writer has already written an XML declaration
                m_writer.instruction(node.name(), node.text());
            return true;
        default:
            return false;
        }
    }

    void writeElement(const kel::Element& element)
    {
        kel::Writer::Element written = m_writer.element(element.name());
        for (const kel::Attribute& attribute : element.attributes())
            written.attribute(attribute.name(), attribute.text());
        writeChildren(element);
    }

    kel::Writer& m_writer;
    std::size_t m_written = 0;
    std::size_t m_leftOut = 0;
};

} // namespace

bool runWrite(const Arguments& arguments)
{
    kel::Writer writer(outputPath(arguments.values[0]), !arguments.isPlain);
    writer.comment(" every kind of content ");
    {
        auto catalogue = writer.element("catalogue");
        catalogue.attribute("name", L"Gr\u00FC\u00DFe & \"quotes\" <here>").attribute("remark", "");
        writer.element("title", "a whole element, 1 < 2");
        {
            auto entry = writer.element("entry");
            entry.attribute("id", 1);
            writer.text("text & markup, escaped: <b>");
            writer.element("empty");
        }
        auto entry = writer.element("entry");
        entry.attribute("id", 2);
        writer.cdata("if (a < b && c > d) { }");
        writer.instruction("page", "break");
        writer.element("sign", L"\U0001F333\U0001D11E");
    }
    writer.close();
    return true;
}

bool runExport(const Arguments& arguments)
{
    const kel::Document document = load(arguments.values[0]);
    const std::string& path = arguments.values[1];
    kel::Writer writer(outputPath(path), !arguments.isPlain);
    Exporter exporter(writer);
    exporter.writeChildren(document);
    writer.close();
    const std::size_t written = exporter.written();
    reportStream(path) << written << (written == 1 ? " node" : " nodes") << " written, " << exporter.leftOut()
                       << " left out (not supported by the writer)\n";
    return true;
}

} // namespace tool
