// The first, the second, ... allocation of a call fails until the call succeeds: what comes out stays
// untouched, nothing is left behind, and the objects go on working.

#include "support/dom_fixture.h"

#include "KelXmlLib/filer.h"
#include "guards/prescan.h"

#include <QtCore/QBuffer>
#include <QtCore/QTextStream>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{

/// What a call can work on, made afresh for each failure.
struct Objects : OneOfEach
{
    ComPtr<IXMLDOMNode> spare;
};

/// The place for an output, whatever a call gives out.
struct Out
{
    template <class Object>
    operator Object**() const
    {
        return reinterpret_cast<Object**>(place);
    }
    void** place;
};

struct Call
{
    const char* name;
    /// Makes the call with `out` as its only output.
    std::function<HRESULT(Objects&, Out out)> make;
    /// The part of the call in which Qt itself leaks; none for most.
    std::function<void(QDomDocument&, const QString& name)> qtAlone = nullptr;
};

struct OutOfMemory : DomTest
{
    static Objects prepare()
    {
        Objects made{oneOfEach(L"<a x='1'>t<b><c/></b></a>"), nullptr};
        made.spare = create(*made.document, NODE_ELEMENT, L"spare");
        return made;
    }

    /// Fails each allocation of the call in turn. \return how many there were
    static int failEach(const Call& call)
    {
        static int untouched = 0;
        for (int nth = 1; nth < 5000; ++nth) {
            Objects objects = prepare();
            void* out = &untouched;
            bool failed = false;
            bool thrown = false;
            HRESULT answer = S_OK;
            {
                allocations::FailAt at(static_cast<std::size_t>(nth));
                try {
                    answer = call.make(objects, Out{&out});
                } catch (const std::bad_alloc&) {
                    thrown = true;
                }
                failed = at.failed();
            }
            EXPECT_EQ(failed, thrown || answer != S_OK || !out) << "allocation " << nth << ": nobody is told";
            if (thrown) {
                EXPECT_EQ(&untouched, out) << "allocation " << nth;
            }
            EXPECT_EQ(L"a", nameOf(*objects.root));
            append(*objects.root, *objects.spare);
            if (out && out != &untouched && !thrown)
                free(call, out);
            if (!failed)
                return nth - 1;
        }
        ADD_FAILURE() << call.name << " does not come to an end";
        return 0;
    }

    /// What Qt alone leaves behind when each allocation of its part of the call fails in turn.
    static std::size_t leftByQt(const Call& call)
    {
        if (!call.qtAlone)
            return 0;
        const std::size_t before = allocations::live();
        for (std::size_t nth = 1;; ++nth) {
            QDomDocument document;
            document.setContent(QStringLiteral("<a x='1'>t<b><c/></b></a>"));
            const QString name = QString::fromUtf8("name");
            allocations::FailAt at(nth);
            try {
                call.qtAlone(document, name);
            } catch (const std::bad_alloc&) {
                continue;
            }
            if (!at.failed())
                break;
        }
        return allocations::live() - before;
    }

    static void free(const Call& call, void* out)
    {
        if (call.name[0] == '"')
            SysFreeString(static_cast<BSTR>(out));
        else
            static_cast<IUnknown*>(out)->Release();
    }
};

TEST_F(OutOfMemory, LeavesOutputsUntouchedAndNothingBehind)
{
    if (!allocations::kCanFail)
        GTEST_SKIP() << "a sanitizer's allocator cannot be made to fail";
    const Bstr name(L"name"), x(L"x"), tag(L"b"), words(L"text"), xml(L"<n y='2'>u<!--k--></n>");
    const Variant one(1), two(2), string(L"text");
    const std::wstring path = pathOf("written.xml").toStdWString();
    const QString readPath = pathOf("read.xml");
    write(readPath, "<n y='2'>u<!--k--></n>");
    const Variant source(readPath.toStdWString());
    const QObject first; // with which Qt makes what it keeps for the thread, and does not survive a failure
    // A name in quotes says that the output is a string.
    const std::vector<Call> calls = {
        {"DllGetClassObject",
         [](Objects&, Out out) { return DllGetClassObject(CLSID_DOMDocument, IID_IUnknown, out.place); }},
        {"\"get_nodeName", [](Objects& o, Out out) { return o.root->get_nodeName(out); }},
        {"\"get_text of an element", [](Objects& o, Out out) { return o.root->get_text(out); },
         [](QDomDocument& d, const QString&) { d.documentElement().text(); }},
        {"\"get_text of a text", [](Objects& o, Out out) { return o.text->get_text(out); }},
        {"get_parentNode", [](Objects& o, Out out) { return o.root->get_parentNode(out); }},
        {"get_firstChild", [](Objects& o, Out out) { return o.root->get_firstChild(out); }},
        {"get_childNodes", [](Objects& o, Out out) { return o.root->get_childNodes(out); }},
        {"get_attributes", [](Objects& o, Out out) { return o.root->get_attributes(out); }},
        {"get_item of a list", [](Objects& o, Out out) { return o.list->get_item(1, out); }},
        {"nextNode", [](Objects& o, Out out) { return o.list->nextNode(out); }},
        {"get_item of a map", [](Objects& o, Out out) { return o.map->get_item(0, out); }},
        {"getNamedItem", [&](Objects& o, Out out) { return o.map->getNamedItem(x.get(), out); }},
        {"selectNodes", [&](Objects& o, Out out) { return o.document->selectNodes(tag.get(), out); }},
        {"createNode of an element",
         [&](Objects& o, Out out) { return o.document->createNode(one.get(), name.get(), nullptr, out); },
         [](QDomDocument& d, const QString& n) { d.createElementNS(QString(), n); }},
        {"createNode of an attribute",
         [&](Objects& o, Out out) { return o.document->createNode(two.get(), name.get(), nullptr, out); },
         [](QDomDocument& d, const QString& n) { d.createAttributeNS(QString(), n); }},
        {"appendChild", [](Objects& o, Out out) { return o.root->appendChild(o.spare.get(), out); }},
        {"appendChild of a first child",
         [](Objects& o, Out out) { return o.text->appendChild(o.spare.get(), out); },
         [](QDomDocument& d, const QString&) { d.createTextNode(QString()); }},
        {"removeChild", [](Objects& o, Out out) { return o.root->removeChild(o.text.get(), out); }},
        {"cloneNode", [](Objects& o, Out out) { return o.root->cloneNode(1, out); },
         [](QDomDocument& d, const QString&) { d.documentElement().cloneNode(true); }},
        {"put_text", [&](Objects& o, Out) { return o.root->put_text(words.get()); },
         [](QDomDocument& d, const QString& n) { d.createTextNode(n); }},
        {"put_text of an attribute", [&](Objects& o, Out) { return o.attribute->put_text(words.get()); },
         [](QDomDocument& d, const QString& n) {
             d.documentElement().attributeNode(QStringLiteral("x")).setNodeValue(n);
         }},
        {"setAttribute", [&](Objects& o, Out) { return o.root->setAttribute(name.get(), string.get()); },
         [](QDomDocument& d, const QString& n) { d.documentElement().setAttribute(n, n + n); }},
        {"load", [&](Objects& o, Out) { return o.document->load(source.get(), nullptr); },
         [&](QDomDocument& d, const QString&) { // loses in the look what its input source was reading
             QFile file(readPath);
             if (!file.open(QIODevice::ReadOnly))
                 return;
             const QByteArray bytes = file.readAll();
             kelxml::guards::prescan(bytes);
             QBuffer buffer;
             buffer.setData(bytes);
             buffer.open(QIODevice::ReadOnly);
             d.setContent(&buffer);
         }},
        {"loadXML", [&](Objects& o, Out) { return o.document->loadXML(xml.get(), nullptr); },
         [](QDomDocument& d, const QString&) { d.setContent(QString::fromUtf8("<n y='2'>u<!--k--></n>")); }},
        {"morvCreateXmlFiler",
         [&](Objects&, Out) {
             const std::unique_ptr<IKelXmlFiler> filer(
                 morvCreateXmlFiler(path.c_str(), KelXmlLib::eEncodingUtf8, 0, true, true, nullptr, nullptr));
             return filer ? S_OK : E_FAIL;
         },
         [](QDomDocument&, const QString&) { QXmlStreamWriter(); }},
    };
    for (const Call& call : calls) {
        SCOPED_TRACE(call.name);
        failEach(call);
        const std::size_t before = allocations::live();
        const int count = failEach(call);
        const std::size_t left = allocations::live() - before;
        leftByQt(call);
        EXPECT_EQ(leftByQt(call), left) << count << " allocations";
    }
}

TEST_F(OutOfMemory, AListWhoseReadingFailedIsReadAnew)
{
    const Bstr tag(L"b");
    bool failed = true;
    std::size_t nth = 1;
    for (; failed; ++nth) {
        Objects objects = prepare();
        ComPtr<IXMLDOMNodeList> descendants;
        objects.document->selectNodes(tag.get(), descendants.put());
        LONG children = 0;
        LONG elements = 0;
        {
            allocations::FailAt at(nth);
            try {
                objects.list->get_length(&children);
                descendants->get_length(&elements);
            } catch (const std::bad_alloc&) {}
            failed = at.failed();
        }
        EXPECT_EQ(S_OK, objects.list->get_length(&children));
        EXPECT_EQ(S_OK, descendants->get_length(&elements));
        EXPECT_EQ(2, children) << "allocation " << nth;
        EXPECT_EQ(1, elements) << "allocation " << nth;
    }
    EXPECT_TRUE(nth > 2 || !allocations::kCanFail);
}

enum class Shortage { once, fromThenOn, onANewThread, addressSpace };

/// Lets memory run out at the `nth` place, in this process, which ends with it.
[[noreturn]] void runShort(Shortage shortage, std::size_t nth, const std::function<void()>& work)
{
    bool failed = false;
    try {
        if (shortage == Shortage::addressSpace) {
            std::size_t pages = 0;
            std::ifstream("/proc/self/statm") >> pages;
            const rlimit limit = {pages * 4096 + nth * 16 * 1024, RLIM_INFINITY};
            setrlimit(RLIMIT_AS, &limit);
            work();
        } else if (shortage == Shortage::onANewThread) {
            std::thread([&] {
                const allocations::Budget only(static_cast<std::ptrdiff_t>(nth) * 256);
                try {
                    work();
                } catch (const std::bad_alloc&) {
                    failed = true;
                }
            }).join();
        } else {
            const allocations::FailAt at(nth, shortage == Shortage::fromThenOn);
            work();
            failed = at.failed();
        }
    } catch (const std::bad_alloc&) {
        failed = true;
    }
    _exit(failed ? 1 : 0);
}

/// How many processes die in which memory runs out in `work`, at one place after the other.
int deathsIn(Shortage shortage, const std::function<void()>& work)
{
    int deaths = 0;
    for (std::size_t nth = 1;; nth += nth < 64 ? 1 : nth / 8) {
        const pid_t child = fork();
        if (child == 0)
            runShort(shortage, nth, work);
        int status = 0;
        waitpid(child, &status, 0);
        deaths += WIFSIGNALED(status) ? 1 : 0;
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
            return deaths;
    }
}

// An exception that leaves a destructor of Qt's ends the process. What Qt alone does not survive is not
// counted.
TEST_F(OutOfMemory, SavingAndLoadingThrowWhereverMemoryRunsOut)
{
    const QString written = pathOf("written.xml");
    const Variant source(pathOf("saved.xml").toStdWString());
    const Variant destination(written.toStdWString());
    const auto openStream = [&] {
        QFile file(written);
        if (file.open(QIODevice::WriteOnly))
            QTextStream stream(&file);
    };
    std::wstring elements;
    for (int count = 0; count < 2000; ++count)
        elements += L"<e a='1'>t</e>";
    for (const std::wstring& text :
         {L"<a>" + std::wstring(1'000'000, L'x') + L"</a>", L"<a>" + elements + L"</a>",
          std::wstring(L"<!DOCTYPE a [<!ENTITY e 'value'>]><a>&e;</a>")}) {
        SCOPED_TRACE(::testing::PrintToString(text.substr(0, 30)));
        const auto document = documentOf(text);
        ASSERT_EQ(S_OK, document->save(source.get()));
        const auto save = [&] { document->save(destination.get()); };
        const auto load = [&] { newDocument()->load(source.get(), nullptr); };
        for (const Shortage shortage : {Shortage::once, Shortage::fromThenOn}) {
            EXPECT_EQ(deathsIn(shortage, openStream), deathsIn(shortage, save));
            EXPECT_EQ(0, deathsIn(shortage, load));
        }
        for (const Shortage shortage : {Shortage::onANewThread, Shortage::addressSpace}) {
            EXPECT_EQ(0, deathsIn(shortage, save));
            EXPECT_EQ(0, deathsIn(shortage, load));
        }
    }
}

} // namespace
