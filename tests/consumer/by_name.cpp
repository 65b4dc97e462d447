// Calls a document by name through the installed type library, and writes a file with the filer, whose header
// needs Qt's.

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "KelXmlLib/filer.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"

#include <memory>
#include <string>

int main()
{
    const std::string path = TYPE_LIBRARY;
    KelTypelib::RegisterTypeLib(LIBID_MSXML, std::wstring(path.begin(), path.end()).c_str());
    DllMain(nullptr, 1, nullptr);
    kel::ComPtr<IDispatch> document;
    DllGetClassObject(CLSID_DOMDocument, IID_IDispatch, reinterpret_cast<void**>(document.put()));

    const kel::Bstr name(L"loadXML");
    wchar_t* names = name.get();
    DISPID member = DISPID_UNKNOWN;
    if (document->GetIDsOfNames(GUID{}, &names, 1, 0, &member) != S_OK)
        return 1;
    const kel::Bstr xml(L"<greeting>hello</greeting>");
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = xml.get();
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    VARIANT loaded{};
    if (document->Invoke(member, GUID{}, 0, DISPATCH_METHOD, &arguments, &loaded, nullptr, nullptr) != S_OK)
        return 2;

    const std::unique_ptr<IKelXmlFiler> filer(
        morvCreateXmlFiler(L"/dev/null", KelXmlLib::eEncodingUtf8, 0, true, false, nullptr, nullptr));
    const bool isWritten = filer && filer->writeElmBegin(L"a", L"b") == KelXmlLib::eStatusAccepted;
    return loaded.vt == VT_BOOL && loaded.boolVal == VARIANT_TRUE && isWritten ? 0 : 3;
}
