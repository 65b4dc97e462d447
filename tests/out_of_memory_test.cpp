// Repeats each call and makes its first allocation fail, then its second, and so on until the call succeeds.
// The tests check that the caller can notice each failure, that only Qt leaks, and that the objects still
// work afterwards.

#include "KelXmlLib/filer.h"
#include "KelXmlLib/kel.h"
#include "parsing/prescan.h"
#include "support/dom_fixture.h"
#include "support/patterns.h"

#include <QtCore/QBuffer>
#include <QtCore/QTextStream>
#include <QtCore/QXmlStreamWriter>
#include <QtXml/QDomDocument>
#include <functional>
#include <future>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using allocations::Shortage;

/// The objects that a call uses. Each time a call is repeated, it gets new objects.
struct Objects : OneOfEach
{
    ComPtr<IXMLDOMNode> spare;
    ComPtr<IXMLDOMNodeList> found; ///< elements found by name
    IXMLDOMNode* node;             ///< one of `nodes()`
};

/// An output of any type. Frees what a call wrote to it.
class Out
{
public:
    Out() = default;
    ~Out()
    {
        if (m_free && !isUntouched())
            m_free(m_place);
    }
    Out(const Out&) = delete;

    template <class Type>
    operator Type*()
    {
        if constexpr (std::is_same_v<Type, VARIANT>)
            m_free = [](Place& given) { Variant::adopt(reinterpret_cast<VARIANT&>(given)); };
        else if constexpr (std::is_same_v<Type, BSTR>)
            m_free = [](Place& given) { SysFreeString(reinterpret_cast<BSTR>(given[0])); };
        else if constexpr (std::is_pointer_v<Type>)
            m_free = [](Place& given) { ComPtr<IUnknown>::adopt(reinterpret_cast<IUnknown*>(given[0])); };
        return isWanted ? reinterpret_cast<Type*>(m_place.data()) : nullptr;
    }
    bool isUntouched() const { return m_place == kUntouched; }
    bool isNull() const { return m_place[0] == 0 || m_place[1] == 0; }

    bool isWanted = true;

private:
    using Place = std::array<std::uintptr_t, 3>;
    static constexpr std::uintptr_t kPattern = 0xA5A5A5A5A5A5A5A5;
    static constexpr Place kUntouched = {kPattern, kPattern, kPattern};

    Place m_place = kUntouched;
    void (*m_free)(Place& given) = nullptr;
};

struct Call
{
    const char* name;
    /// Makes the call, with `out` as its only output.
    std::function<HRESULT(Objects&, Out& out)> make;
    HRESULT codeForNull = S_FALSE; ///< the result if the output pointer is null
    /// The part of the call in which Qt itself leaks; null for most calls.
    std::function<void(QDomDocument&, const QString& name)> qtAlone = nullptr;
};

struct OutOfMemory : DomTest
{
    Objects prepare() const
    {
        const std::wstring value(1100, L'1'); // long, so that its conversion allocates
        const OneOfEach made = oneOfEach((L"<a x='" + value + L"'>t<b><c/></b></a>").c_str());
        ComPtr<ITypeInfo> loaded; // cached by the element, so the tested call does not load it
        EXPECT_EQ(S_OK, made.root->GetTypeInfo(0, 0, loaded.put()));
        return {made, create(*made.document, NODE_ELEMENT, L"spare"), find(made), made.root.get()};
    }
    ComPtr<IXMLDOMNodeList> find(const OneOfEach& in) const
    {
        ComPtr<IXMLDOMNodeList> found;
        EXPECT_EQ(S_OK, in.document->selectNodes(tag.get(), found.put()));
        return found;
    }

    std::vector<Call> calls();

    /// Whether the caller can notice a failure: by an exception before any output is written, by the result
    /// code, or by a null BSTR.
    static bool isReported(HRESULT code, const Out& out)
    {
        if (code == kThrown)
            return out.isUntouched();
        return code != S_OK || out.isNull();
    }

    /// Makes each allocation of the call fail in turn.
    void failEach(const Call& call) const
    {
        bool hasFailed = true;
        for (std::size_t nth = 1; hasFailed; ++nth) {
            Objects objects = prepare();
            Out out;
            SCOPED_TRACE("allocation " + std::to_string(nth));
            HRESULT code = kThrown;
            hasFailed = allocations::failsIn(nth, [&] { code = call.make(objects, out); });
            EXPECT_EQ(hasFailed, isReported(code, out)) << "must report a failure iff an allocation fails";
            EXPECT_EQ(lengthOf(*listOf(*objects.root)), lengthOf(*objects.list)) << "must list all children";
            EXPECT_EQ(lengthOf(*find(objects)), lengthOf(*objects.found)) << "must list all elements";
            append(*objects.root, *objects.spare);
        }
    }

    /// Makes each allocation in Qt's part of the call fail in turn.
    static void failQt(const Call& call)
    {
        bool hasFailed = call.qtAlone != nullptr;
        for (std::size_t nth = 1; hasFailed; ++nth) {
            QDomDocument document;
            document.setContent(QStringLiteral("<a x='1'>t<b><c/></b></a>"));
            const QString name = QString::fromUtf8("name");
            hasFailed = allocations::failsIn(nth, [&] { call.qtAlone(document, name); });
        }
    }

    static HRESULT invoke(IDispatch& object, DISPID member, WORD flags, DISPPARAMS parameters,
                          VARIANT* result)
    {
        return object.Invoke(member, IID_IUnknown, 0, flags, &parameters, result, nullptr, nullptr);
    }
    static auto makeFiler(const std::wstring& path)
    {
        return std::unique_ptr<IKelXmlFiler>(
            morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
    }

    /// \return 0 if the filer accepted everything
    static int writeAll(IKelXmlFiler& filer)
    {
        return filer.writeDocBegin() | filer.writeElmBegin(L"r") | filer.writeAttribute(L"a", L"v") |
               filer.writeText(L"text") | filer.writeCData(L"data") | filer.writeComment(L"comment") |
               filer.writeElmBegin(L"e", L"text") | filer.writeElmEnd() | filer.writeDocEnd() | filer.close();
    }

    /// Recorded in place of a result code if the call throws.
    static constexpr HRESULT kThrown = 7777;
    const Bstr name{L"name"}, x{L"x"}, tag{L"b"}, words{L"text"}, xml{L"<n y='2'>u<!--k--></n>"};
    const Variant one{1}, string{L"text"};
};

std::vector<Call> OutOfMemory::calls()
{
    const QString read = pathOf("read.xml");
    write(read, "<n y='2'>u<!--k--></n>");
    const Variant source(read.toStdWString());
    const std::wstring written = pathOf("written.xml").toStdWString();
    using O = Objects;
    const auto makeText = [](QDomDocument& d, const QString& n) { d.createTextNode(n); };
    return {
        {"DllGetClassObject",
         [](O&, Out& out) { return DllGetClassObject(CLSID_DOMDocument, IID_IUnknown, out); }, E_FAIL},
        {"nodeName", [](O& o, Out& out) { return o.node->get_nodeName(out); }},
        {"nodeType", [](O& o, Out& out) { return o.node->get_nodeType(out); }},
        {"parentNode", [](O& o, Out& out) { return o.node->get_parentNode(out); }},
        {"firstChild", [](O& o, Out& out) { return o.node->get_firstChild(out); }},
        {"childNodes", [](O& o, Out& out) { return o.node->get_childNodes(out); }},
        {"attributes", [](O& o, Out& out) { return o.node->get_attributes(out); }},
        {"hasChildNodes", [](O& o, Out& out) { return o.node->hasChildNodes(out); }},
        {"ownerDocument", [](O& o, Out& out) { return o.node->get_ownerDocument(out); }},
        {"documentElement", [](O& o, Out& out) { return o.document->get_documentElement(out); }},
        {"text of an element", [](O& o, Out& out) { return o.root->get_text(out); }, S_FALSE,
         [](QDomDocument& d, const QString&) { d.documentElement().text(); }},
        {"text of a text", [](O& o, Out& out) { return o.text->get_text(out); }},
        {"nodeValue", [](O& o, Out& out) { return o.text->get_nodeValue(out); }},
        {"value", [](O& o, Out& out) { return o.attribute->get_value(out); }},
        {"length of a list", [](O& o, Out& out) { return o.list->get_length(out); }},
        {"length of a list by name", [](O& o, Out& out) { return o.found->get_length(out); }},
        {"item of a list", [](O& o, Out& out) { return o.list->get_item(1, out); }},
        {"nextNode", [](O& o, Out& out) { return o.list->nextNode(out); }},
        {"length of a map", [](O& o, Out& out) { return o.map->get_length(out); }},
        {"item of a map", [](O& o, Out& out) { return o.map->get_item(0, out); }},
        {"getNamedItem", [this](O& o, Out& out) { return o.map->getNamedItem(x.get(), out); }},
        {"selectNodes", [this](O& o, Out& out) { return o.document->selectNodes(tag.get(), out); }},
        {"selectNodes of an element", [this](O& o, Out& out) { return o.root->selectNodes(tag.get(), out); }},
        {"createNode",
         [this](O& o, Out& out) { return o.document->createNode(one.get(), name.get(), nullptr, out); },
         S_FALSE, [](QDomDocument& d, const QString& n) { d.createElementNS(QString(), n); }},
        {"appendChild", [](O& o, Out& out) { return o.root->appendChild(o.spare.get(), out); }, S_OK},
        {"appendChild to a node without children",
         [](O& o, Out& out) { return o.text->appendChild(o.spare.get(), out); }, S_OK,
         [](QDomDocument& d, const QString&) { d.createTextNode(QString()); }},
        {"removeChild", [](O& o, Out& out) { return o.root->removeChild(o.text.get(), out); }, S_OK},
        {"cloneNode", [](O& o, Out& out) { return o.root->cloneNode(1, out); }, S_OK,
         [](QDomDocument& d, const QString&) { d.documentElement().cloneNode(true); }},
        {"put_text", [this](O& o, Out&) { return o.root->put_text(words.get()); }, S_OK, makeText},
        {"Invoke, nodeName", [](O& o, Out& out) { return invoke(*o.root, 2, DISPATCH_PROPERTYGET, {}, out); },
         S_OK},
        {"Invoke, put_text of a number",
         [this](O& o, Out&) {
             VARIANT number = one.get();
             DISPID put = DISPID_PROPERTYPUT;
             return invoke(*o.root, 24, DISPATCH_PROPERTYPUT, {&number, &put, 1, 1}, nullptr);
         },
         S_OK, makeText},
        {"put_text of an attribute", [this](O& o, Out&) { return o.attribute->put_text(words.get()); }, S_OK,
         [](QDomDocument& d, const QString& n) {
             d.documentElement().attributeNode(QStringLiteral("x")).setNodeValue(n);
         }},
        {"setAttribute", [this](O& o, Out&) { return o.root->setAttribute(name.get(), string.get()); }, S_OK,
         [](QDomDocument& d, const QString& n) { d.documentElement().setAttribute(n, n + n); }},
        {"load", [source](O& o, Out&) { return o.document->load(source.get(), nullptr); }, S_OK,
         [](QDomDocument& d, const QString&) { // the prescan's input source leaks too
             QByteArray bytes("<n y='2'>u<!--k--></n>");
             kelxml::parsing::prescan(bytes);
             QBuffer buffer(&bytes);
             buffer.open(QIODevice::ReadOnly);
             d.setContent(&buffer);
         }},
        {"loadXML", [this](O& o, Out&) { return o.document->loadXML(xml.get(), nullptr); }, S_OK,
         [](QDomDocument& d, const QString&) { d.setContent(QString::fromUtf8("<n y='2'>u<!--k--></n>")); }},
        {"a filer from its creation to its end",
         [written](O&, Out&) { return writeAll(*makeFiler(written)); }, S_OK,
         [](QDomDocument&, const QString&) { QXmlStreamWriter(); }},
    };
}

TEST_F(OutOfMemory, ANullOutputOrAFailedAllocationIsReportedAndLeaksNothing)
{
    const QObject first; // makes Qt create its thread data now, because a failure there would end the process
    for (const Call& call : calls()) {
        SCOPED_TRACE(call.name);
        Objects objects = prepare();
        for (IXMLDOMNode* const node : objects.nodes()) {
            Out none;
            none.isWanted = false;
            objects.node = node;
            EXPECT_EQ(call.codeForNull, call.make(objects, none)) << kel::Node(*node).name();
        }
        EXPECT_EQ(leakedBy([&] { failQt(call); }), leakedBy([&] { failEach(call); })) << "only Qt may leak";
    }
}

TEST_F(OutOfMemory, AFailedFirstLookupOfANameDoesNotBreakTheNextOne)
{
    wchar_t load[] = L"load", *names[] = {load};
    expectNoLeaks([&] {
        bool hasFailed = true;
        for (std::size_t nth = 1; hasFailed; ++nth) {
            const auto document = newDocument();
            DISPID id = DISPID_UNKNOWN;
            HRESULT code = kThrown;
            const auto ask = [&] { code = document->GetIDsOfNames(IID_IUnknown, names, 1, 0, &id); };
            hasFailed = allocations::failsIn(nth, ask);
            EXPECT_EQ(code == S_OK ? 58 : DISPID_UNKNOWN, id) << "allocation " << nth;
            ask();
            EXPECT_EQ(58, id) << "after allocation " << nth;
        }
    });
}

/// Repeats `work` in new processes. In each process, memory runs out a little later than in the previous one.
/// Each process runs `work` in a new thread, because Qt allocates more there.
/// \return how many processes a signal killed
int deathsIn(const std::function<void()>& work, Shortage shortage)
{
    int deaths = 0, status = 1;
    for (std::size_t nth = 1; status != 0; nth += nth < 64 ? 1 : nth / 8) {
        const pid_t child = fork();
        if (child == 0) {
            const auto fails = [&] { return allocations::failsIn(nth, work, shortage); };
            _exit(std::async(std::launch::async, fails).get() ? 1 : 0);
        }
        waitpid(child, &status, 0);
        deaths += WIFSIGNALED(status) ? 1 : 0;
    }
    return deaths;
}

// The calls throw. But if a destructor of Qt throws, the process ends. The test counts these deaths. If only
// one allocation fails (`OneFailure`), or one allocation and all later ones (`FromThenOn`), there must be as
// many deaths with the library as with Qt alone. If only a fixed amount of memory is left (`Bytes`,
// `AddressSpace`), there must be no deaths, because the library first checks that there is memory for the
// objects that Qt creates for a file.
TEST_F(OutOfMemory, SavingAndLoadingThrowUnlessQtEndsTheProcess)
{
    const QString written = pathOf("written.xml");
    const Variant source(pathOf("saved.xml").toStdWString());
    const Variant destination(written.toStdWString());
    const auto openStream = [&] {
        QFile file(written);
        if (file.open(QIODevice::WriteOnly))
            QTextStream stream(&file);
    };
    const auto openFile = [&] { QFile(written).open(QIODevice::ReadOnly); };
    const auto makeAFiler = [path = written.toStdWString()] { makeFiler(path); };
    for (const char* const text : {"<a>{x|1000000}</a>", "<a>{<e a='1'>t</e>|2000}</a>",
                                   "<!DOCTYPE a [<!ENTITY e 'value'>]><a>&e;</a>"}) {
        SCOPED_TRACE(text);
        const auto document = documentOf(keltest::expand(text, 0).toStdWString());
        ASSERT_EQ(S_OK, document->save(source.get()));
        const auto save = [&] { document->save(destination.get()); };
        const auto load = [&] { newDocument()->load(source.get(), nullptr); };
        for (int kind = 0; kind <= static_cast<int>(Shortage::AddressSpace); ++kind) {
            SCOPED_TRACE("deaths, shortage " + std::to_string(kind));
            const auto shortage = static_cast<Shortage>(kind);
            const bool mayDie = shortage < Shortage::Bytes;
            EXPECT_EQ(mayDie ? deathsIn(openStream, shortage) : 0, deathsIn(save, shortage)) << "in save";
            EXPECT_EQ(mayDie ? deathsIn(openFile, shortage) : 0, deathsIn(load, shortage)) << "in load";
        }
        EXPECT_EQ(0, deathsIn(makeAFiler, Shortage::Bytes)) << "deaths in the filer";
    }
}

TEST_F(OutOfMemory, TheLayerThrowsAndItsTreesStayUsable)
{
    const std::string path = pathOf("layer.xml").toStdString();
    kel::Document("old").save(path);
    const std::function<void(kel::Element&)> calls[] = {
        [](kel::Element& root) { root.append("new", L"text").setAttribute("n", 0.5); },
        [](kel::Element& root) { root.insertBefore(root.child("a"), *root.nodes().begin()); },
        [](kel::Element& root) { root.replace(root.child("a"), root.appendComment("c")); },
        [](kel::Element& root) { root.setText("all"); },
        [](kel::Element& root) { EXPECT_TRUE(root.child("a").get()); },
        [](kel::Element& root) { kel::Document().append(root.clone()); },
        [](kel::Element& root) { EXPECT_FALSE((*root.attributes().begin()).text().empty()); },
        [](kel::Element& root) { EXPECT_FALSE(root.document().toString().empty()); },
        [&](kel::Element& root) { root.document().save(path); },
    };
    for (const auto& call : calls) {
        bool hasFailed = true;
        for (std::size_t nth = 1; hasFailed; ++nth) {
            kel::Document document = kel::Document::parse("<r x='1'>t<a/><b/></r>");
            kel::Element root = document.root();
            bool isMade = false;
            SCOPED_TRACE("call " + std::to_string(&call - calls) + ", allocation " + std::to_string(nth));
            hasFailed = allocations::failsIn(nth, [&] {
                call(root);
                isMade = true;
            });
            EXPECT_NE(hasFailed, isMade) << "a call must throw if and only if an allocation fails";
            root.append("after");
            EXPECT_EQ(root, document.root());
            EXPECT_TRUE(kel::Document::parse(document.toString()).root().child("after"));
            EXPECT_TRUE(kel::Document::load(path).root()) << "a file must never be half-written";
        }
    }
}

} // namespace
