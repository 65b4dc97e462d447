// Everything is called once more where a thread or the process ends: from the destructors of a thread-local
// object, of a static one that Qt's codecs outlive, and of one that outlives them.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/filer.h"
#include "KelXmlLib/kel.h"
#include "support/by_name.h"
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
        require(filer && filer->writeElmBegin(L"begun") == KelXmlLib::eStatusAccepted);
    }

    ~LastCalls()
    {
        const HRESULT expected = hasCodecs ? S_OK : S_FALSE;
        require(filer->writeText(L"\u00e4") == 0 && filer->writeDocEnd() == 0); // which was open before
        filer.reset();
        write("<r>\u00e4</r>\n");
        require(document->load(path.get(), nullptr) == expected);
        write("kept");
        require(document->save(path.get()) == expected);
        require(content() == (hasCodecs ? "<r>\u00e4</r>\n" : "kept"));
        beginFile();
        filer.reset();
        require(content() == (hasCodecs ? "<begun" : "kept"));

        const kel::Bstr xml(L"<?xml version='1.0' encoding='ISO-8859-1'?><a x='1'>t&#228;<b/></a>");
        require(document->loadXML(xml.get(), nullptr) == S_OK);
        kel::ComPtr<IXMLDOMElement> root;
        document->get_documentElement(root.put());
        kel::Element(*root).append(L"n\u00e4me");
        require(kel::Element(*root).text<std::wstring>() == L"t\u00e4");
        kel::Variant result;
        require(callByName(*root, L"nodeName", DISPATCH_PROPERTYGET, result) == S_OK);
        require(result.type() == VT_BSTR && result.text() == L"a");
        ITypeLib* library = nullptr;
        write(keltest::stamped("<identity name='" + QByteArray(hasCodecs ? "With" : "Without") +
                               "' uuid='00000000-0000-0000-0000-000000000001' version='1.0'/></library>"));
        const HRESULT answer = KelTypelib::LoadTypeLib(path.get().bstrVal, &library);
        require(answer == (hasCodecs ? S_OK : TYPE_E_CANTLOADLIBRARY));
        std::puts(file.c_str());
    }
};

LastCalls outlivingCodecs{false};

} // namespace

int main()
{
    KelTypelib::RegisterTypeLib(LIBID_MSXML, L"" KEL_TYPE_LIBRARY);
    outlivingCodecs.beginFile();
    std::thread([] {
        thread_local LastCalls atThreadEnd{true};
        atThreadEnd.beginFile();
    }).join();
    static LastCalls outlivedByCodecs{true};
    outlivedByCodecs.beginFile();
}
