// Loading and saving through the interface against Qt used directly: the same verdict, the same saved bytes,
// nothing deeper and nothing longer than the prescan said, and a text beyond the bounds is refused
// with the earlier tree in place.

#include "guards/limits.h"
#include "guards/prescan.h"
#include "support.h"
#include "support/beside_qt.h"

#include <QtCore/QBuffer>

using namespace kelxml::guards;
using namespace kelfuzz;

namespace
{

/// \param load loads into the document given, with the flag given
/// \param content what Qt is to load
/// \param length the most characters that it can have
/// \param text what it is; null where it has to be decoded, which is Qt's to do
template <class Load, class Content>
void compare(Load load, const Prescan& seen, Content&& content, qint64 length, const QString& text = {})
{
    require(seen.nesting <= kMaxNesting + 1);
    // Without entities, only markup that is there can nest, and a parenthesis is the shortest.
    const bool hasEntities = text.isNull() || text.contains(QLatin1String("<!EN"));
    require(seen.isWithin() || hasEntities || length > kMaxNesting);
    const auto document = kel::newDocument();
    const kel::Bstr earlier(L"<earlier/>");
    require(document->loadXML(earlier.get(), nullptr) == S_OK);
    QDomDocument direct;
    require(direct.setContent(QStringLiteral("<earlier/>")));
    const bool isLoaded = loadBeside(direct, *document, load, content, seen.isWithin());
    const Extent tree = extentOf(direct);
    require(!seen.isWithin() || (tree.depth <= seen.nesting && seen.nesting <= kMaxNesting));
    const bool onlyElementsNest = !text.isNull() && !text.contains(u'('); // and no content model
    require(!isLoaded || !onlyElementsNest || tree.depth == seen.nesting);
    require(tree.length <= length + std::max(kEntityActivationThreshold, kMaxEntityAmplification * length));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const kel::Bstr xml(QString::fromUtf8(bytes).toStdWString().c_str());
    const QString text = QString::fromUcs4(reinterpret_cast<const char32_t*>(xml.c_str()));
    if (!text.isEmpty())
        compare([&xml](auto& document, auto* success) { return document.loadXML(xml.get(), success); },
                prescan(text), text, text.size(), text);

    write(filePath(), bytes);
    const kel::Variant path(filePath().toStdWString());
    QBuffer buffer(&bytes);
    require(buffer.open(QIODevice::ReadOnly));
    compare([&path](auto& document, auto* success) { return document.load(path.get(), success); },
            prescan(bytes), &buffer, bytes.size());
    return 0;
}
