// What the look at a text costs beside Qt's load of it, and what becomes of texts that would make Qt's parser
// explode: time and memory against their length. Prints Markdown.

#include "clock.h"
#include "inputs.h"
#include "peak.h"

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "KelXmlLib/xmldom.h"
#include "guards/prescan.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtXml/QDomDocument>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr std::int64_t kDocumentSize = 10'000'000;
constexpr int kTurns = 5;

void printShare(const char* name, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::ReadOnly))
        std::abort();
    std::vector<double> look;
    std::vector<double> load;
    for (int turn = 0; turn < kTurns; ++turn) {
        tidyHeap();
        buffer.seek(0);
        look.push_back(secondsOf([&] { kelxml::guards::prescan(bytes); }));
        QDomDocument document;
        load.push_back(secondsOf([&] { document.setContent(&buffer); }));
    }
    std::printf("| %s | %.1f MB | %.1f ms | %.0f ms | %.1f %% |\n", name, bytes.size() / 1e6,
                median(look) * 1e3, median(load) * 1e3, 100 * median(look) / median(load));
}

void printShares()
{
    std::printf("| Document | Length | The look | Qt's load | Share |\n|---|--:|--:|--:|--:|\n");
    printShare("MIME database", readFile(inputFile(0)));
    printShare("records", generate(Shape::Records, kDocumentSize));
    printShare("markup", generate(Shape::Markup, kDocumentSize));
    printShare("text", generate(Shape::Text, kDocumentSize));
    printShare("attributes", generate(Shape::Attributes, kDocumentSize));
    printShare("a long document type", generate(Shape::DocumentType, kDocumentSize / 100));
}

struct Explosion
{
    const char* name;
    QByteArray (*make)(int length); // of about that length
};

QByteArray numbered(const char* each, int count)
{
    QByteArray all;
    for (int number = 0; number < count; ++number)
        all += QByteArray(each).replace('#', QByteArray::number(number));
    return all;
}

const Explosion kExplosions[] = {
    {"elements, nested",
     [](int length) {
         return QByteArray("<a>").repeated(length / 7) + QByteArray("</a>").repeated(length / 7);
     }},
    {"elements, never closed", [](int length) { return QByteArray("<a>").repeated(length / 3); }},
    {"elements nested in an entity's value",
     [](int length) {
         return "<!DOCTYPE r [<!ENTITY e '" + QByteArray("<a>").repeated(length / 7) +
                QByteArray("</a>").repeated(length / 7) + "'>]><r>&e;</r>";
     }},
    {"parentheses in a content model, never closed",
     [](int length) { return "<!DOCTYPE r [<!ELEMENT r " + QByteArray("(").repeated(length); }},
    {"parentheses in a content model, closed",
     [](int length) {
         return "<!DOCTYPE r [<!ELEMENT r " + QByteArray("(").repeated(length / 2) + "a" +
                QByteArray(")").repeated(length / 2) + ">]><r/>";
     }},
    {"an entity of 1,000 elements, used again and again",
     [](int length) {
         return "<!DOCTYPE r [<!ENTITY e '" + QByteArray("<b/>").repeated(1000) + "'>]><r>" +
                QByteArray("&e;").repeated(length / 3) + "</r>";
     }},
    {"a text of 10,000 characters, used in an attribute",
     [](int length) {
         return "<!DOCTYPE r [<!ENTITY e '" + QByteArray(10'000, 'x') + "'>]><r a='" +
                QByteArray("&e;").repeated(length / 3) + "'/>";
     }},
    {"entity declarations",
     [](int length) { return "<!DOCTYPE r [" + numbered("<!ENTITY e# '1'>", length / 20) + "]><r/>"; }},
    {"one text", [](int length) { return "<r>" + QByteArray(length, 'x') + "</r>"; }},
    {"one attribute", [](int length) { return "<r a='" + QByteArray(length, 'x') + "'/>"; }},
    {"one name", [](int length) { return "<" + QByteArray(length, 'n') + "/>"; }},
};

/// Has a fresh process load a text and print how that went.
void loadElsewhere(const QByteArray& text)
{
    const QByteArray path = outputFile(QStringLiteral("explosion.xml")).toUtf8();
    QFile file(QString::fromUtf8(path));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        std::abort();
    file.close();
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "kel_bench_bounds", path.constData(), nullptr);
        _exit(1);
    }
    waitpid(child, nullptr, 0);
}

void printExplosions()
{
    std::printf("| Text | Length | | `load` | Memory | `loadXML` |\n|---|--:|---|--:|--:|--:|\n");
    for (const Explosion& explosion : kExplosions) {
        for (const int length : {100'000, 1'000'000, 10'000'000}) {
            const QByteArray text = explosion.make(length);
            std::printf("| %s | %.2f MB ", explosion.name, text.size() / 1e6);
            loadElsewhere(text);
        }
    }
}

kel::ComPtr<IXMLDOMDocument> newDocument()
{
    kel::ComPtr<IXMLDOMDocument> document;
    DllGetClassObject(CLSID_DOMDocument, IID_IXMLDOMDocument, reinterpret_cast<void**>(document.put()));
    return document;
}

void printLoad(const char* file)
{
    const QString path = QString::fromUtf8(file);
    const kel::Bstr name(path.toStdWString().c_str());
    VARIANT source{};
    source.vt = VT_BSTR;
    source.bstrVal = name.get();
    const auto document = newDocument();
    HRESULT result = S_FALSE;
    double load = 0;
    const double peak = peakOf([&] { load = secondsOf([&] { result = document->load(source, nullptr); }); });

    const kel::Bstr text(QString::fromUtf8(readFile(path)).toStdWString().c_str());
    const auto another = newDocument();
    HRESULT sameResult = S_FALSE;
    const double loadXML = secondsOf([&] { sameResult = another->loadXML(text.get(), nullptr); });
    if (sameResult != result)
        std::abort();
    std::printf("| %s | %.1f ms | %.1f MB | %.1f ms |\n", result == S_OK ? "loaded" : "refused", load * 1e3,
                peak, loadXML * 1e3);
}

} // namespace

} // namespace bench

int main(int argc, char** argv)
{
    DllMain(nullptr, 1, nullptr);
    if (argc == 2) {
        bench::printLoad(argv[1]);
        return 0;
    }
    bench::printExplosions();
    std::printf("\n");
    bench::printShares();
    return 0;
}
