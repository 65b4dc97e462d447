// Calls a document by name through the installed type library, by its interface and by its class, and writes
// a file with the filer, whose header needs Qt's.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/convenience.h"
#include "KelXmlLib/document.h"
#include "KelXmlLib/filer.h"

#include <memory>

int main()
{
    KelTypelib::RegisterTypeLib(LIBID_MSXML, TYPE_LIBRARY);
    const auto document = kel::newDocument();
    auto& object = static_cast<CMorvXMLDOMDocument&>(*document); // its methods are called directly
    UINT count = 0;
    kel::ComPtr<ITypeInfo> information;
    const kel::Bstr name(L"loadXML");
    wchar_t* names = name.get();
    DISPID member = DISPID_UNKNOWN;
    const kel::Variant xml(L"<greeting>hello</greeting>");
    VARIANT argument = xml.get();
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    kel::Variant loaded;
    const bool isCalled =
        object.GetTypeInfoCount(&count) == S_OK && object.GetTypeInfo(0, 0, information.put()) == S_OK &&
        object.GetIDsOfNames(GUID{}, &names, 1, 0, &member) == S_OK &&
        object.Invoke(member, GUID{}, 0, DISPATCH_METHOD, &arguments, loaded.put(), nullptr, nullptr) == S_OK;

    const std::unique_ptr<IKelXmlFiler> filer(
        morvCreateXmlFiler(L"/dev/null", KelXmlLib::eEncodingUtf8, 0, true, false, nullptr, nullptr));
    const bool isWritten = filer && filer->writeElmBegin(L"a", L"b") == KelXmlLib::eStatusAccepted;
    return isCalled && loaded.truth() && isWritten ? 0 : 1;
}
