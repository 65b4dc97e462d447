// The build generates a list of the no-ops of each class. To use the list, `isNoOp` finds the class of an
// object by the interfaces that the object supports.

#include "late_bound.h"

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/guids.h"
#include "KelXmlLib/module.h"
#include "commands.h"
#include "text.h"

#include <algorithm>
#include <cwctype>
#include <filesystem>
#include <iterator>
#include <string_view>

#include <dlfcn.h>

namespace tool
{
namespace
{

constexpr std::string_view kNoOps[] = {
#include "no_ops.inc"
};

std::string classOf(IDispatch& object)
{
    static const std::pair<const GUID&, const char*> kClasses[] = {
        {IID_IXMLDOMDocument, "Document"},   {IID_IXMLDOMElement, "Element"},
        {IID_IXMLDOMAttribute, "Attribute"}, {IID_IXMLDOMNode, "Node"},
        {IID_IXMLDOMNodeList, "NodeList"},   {IID_IXMLDOMNamedNodeMap, "NamedNodeMap"},
    };
    for (const auto& [identifier, name] : kClasses) {
        void* found = nullptr;
        if (object.QueryInterface(identifier, &found) == S_OK) {
            static_cast<IUnknown*>(found)->Release();
            return name;
        }
    }
    return {};
}

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char byte) { return static_cast<char>(std::tolower(byte)); });
    return text;
}

} // namespace

void registerTypeLibrary()
{
    Dl_info library = {};
    if (dladdr(reinterpret_cast<const void*>(&DllMain), &library) == 0)
        throw Failure("the path of the library cannot be found");
    const auto directory = std::filesystem::absolute(library.dli_fname).parent_path();
    kel::check(KelTypelib::RegisterTypeLib(LIBID_MSXML,
                                           toWide((directory / KEL_TYPE_LIBRARY_PLACE).string()).c_str()),
               "registering the type library");
}

// Ignores the case of names, because calls by name ignore case too.
bool isNoOp(IDispatch& object, const std::wstring& name, bool isAssignment)
{
    const std::string prefix = classOf(object) + "::";
    const std::string member = toUtf8(name);
    const auto isListed = [&](const std::string& method) {
        const std::string wanted = lowerCase(prefix + method);
        return std::any_of(std::begin(kNoOps), std::end(kNoOps),
                           [&](std::string_view known) { return lowerCase(std::string(known)) == wanted; });
    };
    if (isAssignment)
        return isListed("put_" + member) || isListed("putref_" + member);
    return isListed(member) || isListed("get_" + member);
}

} // namespace tool
