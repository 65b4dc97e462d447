// In which order the holder of the type information asks, gives back and frees. The program stands in for the
// type-library service and for `SysFreeString`, which note down how they are called.

#include "KelComWrapper/typelib.h"
#include "KelXmlLib/dispatch_impl.h"
#include "support/allocations.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace
{

std::string notes;
HRESULT note(const std::string& what, HRESULT answer = S_OK)
{
    notes += what + ' ';
    return answer;
}

/// An object made by hand: its vtable has the slots that a holder calls, and no others.
template <class Interface>
struct HandMade
{
    template <class Method>
    void put(int slot, Method method)
    {
        entries[2 + slot] = reinterpret_cast<const void*>(+method);
    }
    Interface* get() { return reinterpret_cast<Interface*>(this); }

    const void* const* vtable = entries + 2;
    const void* entries[24] = {nullptr, &typeid(Interface)}; ///< the slots, behind what tells the type
};

HandMade<ITypeLib> library;
HandMade<ITypeInfo> info;
TYPEATTR attributes{};
FUNCDESC function{};
HRESULT attributesAnswer = S_OK;
const BSTR texts[] = {SysAllocString(L"a"), SysAllocString(L"b"), SysAllocString(L"c"), SysAllocString(L"d")};

/// A library and its one interface, whose second function cannot be described, and whose third is named with
/// a failure.
void makeObjects()
{
    library.put(6, [](void*, const GUID&, ITypeInfo** found) {
        *found = info.get();
        return note("info");
    });
    info.put(2, [](void*) { return static_cast<ULONG>(note("release")); });
    info.put(3, [](void*, TYPEATTR** lent) {
        *lent = &attributes;
        return note("attributes", attributesAnswer);
    });
    info.put(5, [](void*, UINT index, FUNCDESC** lent) {
        function.memid = static_cast<MEMBERID>(index);
        *lent = &function;
        return note("function", index == 1 ? E_FAIL : S_OK);
    });
    info.put(10, [](void*, wchar_t**, UINT, MEMBERID*) { return note("ask", DISP_E_UNKNOWNNAME); });
    info.put(12, [](void*, MEMBERID member, BSTR* name, BSTR*, DWORD*, BSTR*) {
        *name = texts[member];
        return note("name", member == 2 ? E_FAIL : S_OK);
    });
    info.put(19, [](void*, TYPEATTR*) { note("-attributes"); });
    info.put(20, [](void*, FUNCDESC*) { note("-function"); });
}

/// What a holder does from its first lookup to its end, and what the lookup finds.
std::string lifeOf(WORD functions, HRESULT answer = S_OK, std::size_t failingAllocation = 0)
{
    notes.clear();
    attributes.cFuncs = functions;
    attributesAnswer = answer;
    {
        CComTypeInfoHolder holder(&IID_IUnknown, &IID_IUnknown, 1, 0);
        wchar_t name[] = L"a", *names[] = {name};
        DISPID id = DISPID_UNKNOWN;
        allocations::failsIn(failingAllocation, [&] { holder.GetIDsOfNames(names, 1, 0, &id); });
        note(std::to_string(id));
    }
    return notes;
}

} // namespace

/// Leaves something in the buffer, for the next one to be told from one that was cleared.
HRESULT KelTypelib::GetTlbFilePath(const GUID&, wchar_t* path)
{
    const bool isClear = std::all_of(path, path + PathCapacity, [](wchar_t unit) { return unit == 0; });
    std::fill_n(path, PathCapacity - 1, L'x');
    return note(isClear ? "zeros" : "remains");
}

HRESULT KelTypelib::LoadTypeLib(const wchar_t*, ITypeLib** loaded)
{
    *loaded = library.get();
    return S_OK;
}

void SysFreeString(BSTR text)
{
    if (text)
        note(std::string("free:") + static_cast<char>(*text));
}

TEST(TypeInfoHolder, GivesBackAndFreesInThePublishedOrder)
{
    makeObjects();
    notes.reserve(1000); // notes allocate nothing where an allocation is to fail
    EXPECT_EQ("zeros info attributes function name -function function function name -function free:c "
              "function name -function -attributes 0 release free:d free:a ",
              lifeOf(4));
    EXPECT_EQ("zeros info attributes -attributes ask -1 release ", lifeOf(0));
    EXPECT_EQ("zeros info attributes ask -1 release ", lifeOf(4, E_FAIL));
    if (allocations::kCanFail) {
        EXPECT_EQ("zeros info attributes -attributes ask -1 release ", lifeOf(4, S_OK, 1));
    }
}
