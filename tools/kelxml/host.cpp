// Loading and unloading of the library.

#include "host.h"

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "text.h"

#include <filesystem>
#include <optional>

#include <dlfcn.h>
#include <link.h>

namespace fs = std::filesystem;

namespace host
{
namespace
{

constexpr unsigned kProcessAttach = 1;

/// The program's own library path leads to it, in the build and where it is installed.
void* openLibrary()
{
    void* const library = dlopen(KEL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
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
    const fs::path path = directoryOf(m_library.get()) / KEL_TYPE_LIBRARY_PLACE;
    const std::optional<std::wstring> name = toWide(path.string());
    kel::check(
        KelTypelib::RegisterTypeLib(*symbol<const GUID>("LIBID_MSXML"), name ? name->c_str() : nullptr),
        "registering the type library");
}

void* Library::newObject(const GUID& interfaceId) const
{
    void* object = nullptr;
    kel::check(symbol<decltype(DllGetClassObject)>("DllGetClassObject")(
                   *symbol<const GUID>("CLSID_DOMDocument"), interfaceId, &object),
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

kel::ComPtr<IXMLDOMElement> Library::asElement(IXMLDOMNode& node) const
{
    return kel::query<IXMLDOMElement>(node, *symbol<const GUID>("IID_IXMLDOMElement"));
}

kel::ComPtr<IXMLDOMAttribute> Library::asAttribute(IXMLDOMNode& node) const
{
    return kel::query<IXMLDOMAttribute>(node, *symbol<const GUID>("IID_IXMLDOMAttribute"));
}

} // namespace host
