// Loading and saving through the interface against Qt used directly: same verdict, same saved bytes, and a
// text beyond the bounds is refused with the earlier tree in place.

#include "KelXmlLib/convenience.h"
#include "guards/limits.h"
#include "guards/prescan.h"
#include "support.h"
#include "support/saved_by_qt.h"

using namespace kelxml::guards;
using namespace kelfuzz;
using kel::Bstr;
using kel::Variant;

namespace
{

QByteArray savedBy(IXMLDOMDocument& document)
{
    static const MemoryFile file;
    require(document.save(Variant(file.path()).get()) == S_OK);
    return file.read();
}

/// \param load loads into the document given, with the flag given
/// \param content what Qt is to load
template <class Load, class Content>
void compare(Load load, const Prescan& seen, Content&& content)
{
    const auto document = kel::newDocument();
    require(document->loadXML(Bstr(L"<earlier/>").get(), nullptr) == S_OK);
    const QByteArray earlier = savedBy(*document);
    VARIANT_BOOL success = 7;
    const HRESULT result = load(*document, &success);
    QDomDocument direct;
    const bool accepted = seen.within && direct.setContent(content);
    require(result == (accepted ? S_OK : S_FALSE));
    require(success == (accepted ? VARIANT_TRUE : VARIANT_FALSE));
    require(savedBy(*document) == (seen.within ? savedByQt(direct) : earlier));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const Bstr xml(QString::fromUtf8(bytes).toStdWString().c_str());
    const QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(xml.c_str()));
    if (!text.isEmpty())
        compare([&xml](IXMLDOMDocument& document,
                       VARIANT_BOOL* success) { return document.loadXML(xml.get(), success); },
                prescan(text), text);

    static MemoryFile file;
    file.write(bytes);
    const Variant path(file.path());
    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    const Prescan seen = prescan(bytes);
    compare([&path](IXMLDOMDocument& document,
                    VARIANT_BOOL* success) { return document.load(path.get(), success); },
            seen, &buffer);
    return 0;
}
