// Each object caches the names of its interface's members when it loads the type information. A lookup of one
// name uses the cache if the name matches a member exactly, including case. All other lookups ask the type
// information.

#include "com/description_ptr.h"

#include "KelXmlLib/dispatch_impl.h"

#include <cwchar>
#include <new>
#include <utility>

using kelxml::com::DescriptionPtr;

HRESULT CComTypeInfoHolder::LoadNameCache(ITypeInfo* typeInfo)
{
    TYPEATTR* borrowed = nullptr;
    if (FAILED(typeInfo->GetTypeAttr(&borrowed)))
        return S_OK;
    const DescriptionPtr<TYPEATTR> attributes(borrowed, {typeInfo}); // released after all FUNCDESCs

    m_pMap.reset();
    m_nCount = attributes->cFuncs;
    if (m_nCount == 0)
        return S_OK;
    std::unique_ptr<NameEntry[]> map(new (std::nothrow) NameEntry[attributes->cFuncs]);
    if (!map)
        return E_OUTOFMEMORY;
    for (WORD index = 0; index < attributes->cFuncs; ++index)
        readName(*typeInfo, index, map[index]);
    m_pMap = std::move(map);
    return S_OK;
}

void CComTypeInfoHolder::readName(ITypeInfo& typeInfo, UINT index, NameEntry& entry)
{
    FUNCDESC* borrowed = nullptr;
    if (FAILED(typeInfo.GetFuncDesc(index, &borrowed)))
        return;
    kel::Bstr name; // declared before `function`, so that the name is freed after the FUNCDESC
    const DescriptionPtr<FUNCDESC> function(borrowed, {&typeInfo});
    if (FAILED(typeInfo.GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr)))
        return;
    entry.length = static_cast<std::int32_t>(name.length());
    entry.identifier = function->memid;
    entry.name = std::move(name);
}

const CComTypeInfoHolder::NameEntry* CComTypeInfoHolder::findName(const wchar_t* name) const noexcept
{
    if (!m_pMap)
        return nullptr;
    const std::int32_t length = lstrlenW(name);
    for (std::int32_t index = m_nCount - 1; index >= 0; --index) {
        const NameEntry& entry = m_pMap[static_cast<std::size_t>(index)];
        if (entry.length == length && entry.name &&
            std::wmemcmp(entry.name.get(), name, static_cast<std::size_t>(length)) == 0)
            return &entry;
    }
    return nullptr;
}
