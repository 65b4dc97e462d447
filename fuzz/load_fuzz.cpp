// Loading and saving through the interface against Qt used directly: same verdict, same saved bytes, and a
// text beyond the bounds is refused with the earlier tree in place.

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"
#include "dom/text_bounds.h"
#include "support.h"

#include <QtCore/QBuffer>
#include <QtCore/QTextStream>
#include <QtXml/QDomDocument>
#include <cstdint>

using namespace kelxml;
using namespace kelfuzz;
using kel::Bstr;
using kel::ComPtr;

namespace
{

QByteArray savedBy(IXMLDOMDocument& document)
{
    static const MemoryFile file;
    require(document.save(variantOf(Bstr(file.path().c_str()))) == S_OK);
    return file.read();
}

QByteArray savedBy(const QDomDocument& document)
{
    QBuffer buffer;
    require(buffer.open(QIODevice::WriteOnly | QIODevice::Text));
    QTextStream stream(&buffer);
    stream.setCodec("UTF-8");
    document.save(stream, 4, QDomNode::EncodingFromDocument);
    stream.flush();
    return buffer.data();
}

/// A document with a tree in it, which a refused text must leave alone.
ComPtr<IXMLDOMDocument> newDocument()
{
    ComPtr<IXMLDOMDocument> document;
    require(DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument,
                              reinterpret_cast<void**>(document.put())) == S_OK);
    require(document->loadXML(Bstr(L"<earlier/>").get(), nullptr) == S_OK);
    return document;
}

/// \param load loads into the document given, with the flag given
/// \param content what Qt is to load
template <class Load, class Content>
void compare(Load load, const bounds::Look& look, Content&& content)
{
    const auto document = newDocument();
    const QByteArray earlier = savedBy(*document);
    VARIANT_BOOL success = 7;
    const HRESULT result = load(*document, &success);
    QDomDocument direct;
    const bool accepted = look.within && direct.setContent(content);
    require(result == (accepted ? S_OK : S_FALSE));
    require(success == (accepted ? VARIANT_TRUE : VARIANT_FALSE));
    if (!look.within)
        require(savedBy(*document) == earlier);
    else
        require(savedBy(*document) == savedBy(direct));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    DllMain(nullptr, 1, nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Bstr xml(QString::fromUtf8(bytes).toStdWString().c_str());
    const QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(xml.c_str()));
    if (!text.isEmpty())
        compare([&xml](IXMLDOMDocument& document,
                       VARIANT_BOOL* success) { return document.loadXML(xml.get(), success); },
                bounds::lookAt(text), text);

    static MemoryFile file;
    file.write(bytes);
    const Bstr path(file.path().c_str());
    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    const bounds::Look look = bounds::lookAt(buffer);
    compare([&path](IXMLDOMDocument& document,
                    VARIANT_BOOL* success) { return document.load(variantOf(path), success); },
            look, &buffer);
    return 0;
}
