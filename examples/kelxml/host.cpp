// Loading and unloading of the library.

#include "host.h"

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "text.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace host
{
namespace
{

constexpr unsigned kProcessAttach = 1;

fs::path programDirectory()
{
    return fs::read_symlink("/proc/self/exe").parent_path();
}

bool isThere(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

void* openLibrary()
{
    constexpr char kName[] = "libKelXmlLib.so";
    const fs::path beside = programDirectory() / "../lib" / kName;
    void* const library = dlopen(isThere(beside) ? beside.c_str() : kName, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        throw Failure(std::string("cannot load the library: ") + dlerror());
    return library;
}

fs::path directoryOf(void* library)
{
    const link_map* map = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 || !map)
        return {};
    return fs::path(map->l_name).parent_path();
}

} // namespace

void Library::Closer::operator()(void* library) const
{
    dlclose(library);
}

Library::Library() : m_library(openLibrary())
{
    symbol<decltype(ylrxDelegatedUnloadEntry)>("ylrxDelegatedUnloadEntry"); // to be there at the end
    if (symbol<decltype(DllMain)>("DllMain")(m_library.get(), kProcessAttach, nullptr) != 1 ||
        symbol<decltype(ylrxDelegatedLoadEntry)>("ylrxDelegatedLoadEntry")() != 1)
        throw Failure("the library refuses to be loaded");
    registerTypeLibrary();
}

Library::~Library()
{
    KelTypelib::UnRegisterTypeLib(*symbol<const GUID>("LIBID_MSXML"));
    symbol<decltype(ylrxDelegatedUnloadEntry)>("ylrxDelegatedUnloadEntry")();
}

void* Library::address(const char* name) const
{
    void* const found = dlsym(m_library.get(), name);
    if (!found)
        throw Failure(std::string("the library does not export ") + name);
    return found;
}

void Library::registerTypeLibrary() const
{
    const fs::path directory = directoryOf(m_library.get());
    fs::path path = directory / "xmldom.tlb";
    for (const fs::path& prefix : {directory / "..", programDirectory() / ".."})
        if (!isThere(path))
            path = prefix / "share/kelxml/xmldom.tlb";
    const std::optional<std::wstring> name = toWide(path.string());
    require(KelTypelib::RegisterTypeLib(*symbol<const GUID>("LIBID_MSXML"), name ? name->c_str() : nullptr),
            "registering the type library");
}

void* Library::newObject(const GUID& interfaceId) const
{
    void* object = nullptr;
    require(symbol<decltype(DllGetClassObject)>("DllGetClassObject")(*symbol<const GUID>("CLSID_DOMDocument"),
                                                                     interfaceId, &object),
            "making a document");
    return object;
}

kel::ComPtr<IXMLDOMDocument> Library::newDocument() const
{
    return kel::ComPtr<IXMLDOMDocument>::adopt(
        static_cast<IXMLDOMDocument*>(newObject(*symbol<const GUID>("IID_IXMLDOMDocument"))));
}

kel::ComPtr<IDispatch> Library::newLateBoundDocument() const
{
    return kel::ComPtr<IDispatch>::adopt(static_cast<IDispatch*>(newObject(IID_IDispatch)));
}

template <class Interface>
kel::ComPtr<Interface> Library::as(IXMLDOMNode& node, const char* identifier) const
{
    void* object = nullptr;
    if (node.QueryInterface(*symbol<const GUID>(identifier), &object) != S_OK)
        return {};
    return kel::ComPtr<Interface>::adopt(static_cast<Interface*>(object));
}

kel::ComPtr<IXMLDOMElement> Library::asElement(IXMLDOMNode& node) const
{
    return as<IXMLDOMElement>(node, "IID_IXMLDOMElement");
}

kel::ComPtr<IXMLDOMAttribute> Library::asAttribute(IXMLDOMNode& node) const
{
    return as<IXMLDOMAttribute>(node, "IID_IXMLDOMAttribute");
}

std::string describe(HRESULT code)
{
    static constexpr struct
    {
        HRESULT code;
        const char* text;
    } kCodeTexts[] = {
        {S_FALSE, "refused"},
        {E_NOTIMPL, "not implemented"},
        {E_NOINTERFACE, "no such interface"},
        {E_POINTER, "a pointer is missing"},
        {E_FAIL, "failed"},
        {E_OUTOFMEMORY, "out of memory"},
        {E_INVALIDARG, "an argument is not valid"},
        {DISP_E_MEMBERNOTFOUND, "no member of that kind"},
        {DISP_E_PARAMNOTFOUND, "no such parameter"},
        {DISP_E_TYPEMISMATCH, "an argument has the wrong type"},
        {DISP_E_UNKNOWNNAME, "no member has that name"},
        {DISP_E_EXCEPTION, "the member failed"},
        {DISP_E_OVERFLOW, "a number is out of range"},
        {DISP_E_BADINDEX, "no such index"},
        {DISP_E_BADPARAMCOUNT, "wrong number of arguments"},
        {DISP_E_PARAMNOTOPTIONAL, "an argument that must be given is missing"},
        {TYPE_E_INVDATAREAD, "the type library is damaged"},
        {TYPE_E_LIBNOTREGISTERED, "the type library is not registered"},
        {TYPE_E_ELEMENTNOTFOUND, "the type library does not describe that interface"},
        {TYPE_E_CANTLOADLIBRARY, "the type library cannot be loaded"},
    };
    const char* text = "unknown answer";
    for (const auto& known : kCodeTexts)
        if (known.code == code)
            text = known.text;
    char number[16];
    std::snprintf(number, sizeof number, " (0x%08X)", static_cast<unsigned>(code));
    return std::string(text) + number;
}

void require(HRESULT code, const char* action)
{
    if (code != S_OK)
        throw Failure(std::string(action) + ": " + describe(code));
}

} // namespace host
