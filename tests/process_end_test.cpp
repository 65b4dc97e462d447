// Calls the library from destructors at the end of a thread and of the process: once from a thread-local
// object, once from a static object that is destroyed before Qt's codecs, and once from a static object that
// is destroyed after them.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/filer.h"
#include "KelXmlLib/kel.h"
#include "support/call_by_name.h"
#include "support/objects.h"
#include "support/type_library_file.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>

namespace
{

struct LastCalls
{
    const bool hasCodecs;
    const std::string file = hasCodecs ? "with_codecs.xml" : "without_codecs.xml";
    const kel::Variant path{hasCodecs ? L"with_codecs.xml" : L"without_codecs.xml"};
    const kel::ComPtr<IXMLDOMDocument> document = newDocument();
    std::unique_ptr<IKelXmlFiler> filer = {};

    void write(const QByteArray& content) const { std::ofstream(file) << content.constData(); }
    std::string content() const
    {
        std::ifstream in(file);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void beginFile()
    {
        filer.reset(
            morvCreateXmlFiler(path.get().bstrVal, KelXmlLib::eEncodingUtf8, 0, false, false, L"", L""));
        require(filer && filer->writeElmBegin(L"begun") == KelXmlLib::eStatusAccepted, "a new filer works");
    }

    ~LastCalls()
    {
        requireEqual<int>(filer->writeText(L"\u00e4"), 0, "an open filer works");
        requireEqual<int>(filer->writeDocEnd(), 0, "an open filer works");
        filer.reset();
        write("<r>\u00e4</r>\n");
        requireOk(document->load(path.get(), nullptr), "load", hasCodecs);
        write("kept");
        requireOk(document->save(path.get()), "save", hasCodecs);
        requireEqual(content(), std::string(hasCodecs ? "<r>\u00e4</r>\n" : "kept"), "save needs codecs");
        beginFile();
        filer.reset();
        requireEqual(content(), std::string(hasCodecs ? "<begun" : "kept"), "a filer needs codecs");

        const kel::Bstr xml(L"<?xml version='1.0' encoding='ISO-8859-1'?><a x='1'>t&#228;<b/></a>");
        requireOk(document->loadXML(xml.get(), nullptr), "loadXML");
        kel::ComPtr<IXMLDOMElement> root;
        document->get_documentElement(root.put());
        kel::Element(*root).append(L"n\u00e4me");
        requireEqual(kel::Element(*root).text<std::wstring>(), std::wstring(L"t\u00e4"), "text() is right");
        requireEqual(kel::Document(*document).toString({-1}).substr(44),
                     std::string("<a x=\"1\">t\u00e4<b/><n\u00e4me/></a>"), "toString() is right");
        for (int count = 0; count < 2000; ++count)
            kel::Element(*root).setAttribute("a" + std::to_string(count), count);
        kel::ComPtr<IXMLDOMNamedNodeMap> map;
        root->get_attributes(map.put());
        requireEqual<std::size_t>(itemsOf(*map).size(), 2001, "a map has all attributes");
        kel::Variant result;
        requireOk(callByName(*root, L"nodeName", DISPATCH_PROPERTYGET, result), "a call by name");
        requireEqual(std::wstring(result.text()), std::wstring(L"a"), "the result is right");
        ITypeLib* library = nullptr;
        write(keltest::stamped(
            "<identity name='Last' uuid='00000000-0000-0000-0000-000000000001' version='1.0'/></library>"));
        const HRESULT code = KelTypelib::LoadTypeLib(path.get().bstrVal, &library);
        requireEqual(code, hasCodecs ? S_OK : TYPE_E_CANTLOADLIBRARY, "LoadTypeLib needs codecs");
        std::puts(file.c_str());
    }
};

LastCalls afterCodecs{false};

} // namespace

int main()
{
    KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY);
    afterCodecs.beginFile();
    std::thread([] {
        thread_local LastCalls atThreadEnd{true};
        atThreadEnd.beginFile();
    }).join();
    static LastCalls beforeCodecs{true};
    beforeCodecs.beginFile();
}
