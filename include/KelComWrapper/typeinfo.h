// ITypeLib and ITypeInfo: what a type library says about interfaces, in the published layouts.

#pragma once

#include "dispatch.h"

class ITypeComp;
class ITypeLib;

enum TYPEKIND : std::int32_t {
    TKIND_ENUM = 0,
    TKIND_RECORD = 1,
    TKIND_MODULE = 2,
    TKIND_INTERFACE = 3,
    TKIND_DISPATCH = 4,
    TKIND_COCLASS = 5,
    TKIND_ALIAS = 6,
    TKIND_UNION = 7,
};
enum FUNCKIND : std::int32_t { FUNC_VIRTUAL, FUNC_PUREVIRTUAL, FUNC_NONVIRTUAL, FUNC_STATIC, FUNC_DISPATCH };
enum INVOKEKIND : std::int32_t {
    INVOKE_FUNC = 1,
    INVOKE_PROPERTYGET = 2,
    INVOKE_PROPERTYPUT = 4,
    INVOKE_PROPERTYPUTREF = 8,
};
enum CALLCONV : std::int32_t { CC_CDECL = 1, CC_STDCALL = 4 };

constexpr WORD TYPEFLAG_FDUAL = 0x40;
constexpr WORD TYPEFLAG_FDISPATCHABLE = 0x1000;
constexpr USHORT PARAMFLAG_FIN = 1;
constexpr USHORT PARAMFLAG_FOUT = 2;
constexpr USHORT PARAMFLAG_FRETVAL = 8;
constexpr USHORT PARAMFLAG_FOPT = 16;

struct TYPEDESC
{
    union {
        TYPEDESC* lptdesc; ///< of `VT_PTR`: what is pointed to
        void* lpadesc;
        HREFTYPE hreftype; ///< of `VT_USERDEFINED`: the type, by its place in the library
    };
    VARTYPE vt;
};
struct PARAMDESC
{
    void* pparamdescex;
    USHORT wParamFlags;
};
struct IDLDESC
{
    std::uintptr_t dwReserved;
    USHORT wIDLFlags;
};
struct ELEMDESC
{
    TYPEDESC tdesc;
    union {
        IDLDESC idldesc;
        PARAMDESC paramdesc;
    };
};

struct FUNCDESC
{
    MEMBERID memid;
    SCODE* lprgscode;
    ELEMDESC* lprgelemdescParam;
    FUNCKIND funckind;
    INVOKEKIND invkind;
    CALLCONV callconv;
    SHORT cParams;
    SHORT cParamsOpt;
    SHORT oVft; ///< offset of the slot in the dispatch table, in bytes
    SHORT cScodes;
    ELEMDESC elemdescFunc;
    WORD wFuncFlags;
};

struct TYPEATTR
{
    GUID guid;
    LCID lcid;
    DWORD dwReserved;
    MEMBERID memidConstructor;
    MEMBERID memidDestructor;
    wchar_t* lpstrSchema;
    ULONG cbSizeInstance;
    TYPEKIND typekind;
    WORD cFuncs;
    WORD cVars;
    WORD cImplTypes;
    WORD cbSizeVft;
    WORD cbAlignment;
    WORD wTypeFlags;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    TYPEDESC tdescAlias;
    IDLDESC idldescType;
};

struct VARDESC;
struct TLIBATTR
{
    GUID guid;
    LCID lcid;
    std::int32_t syskind;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    WORD wLibFlags;
};

static_assert(sizeof(TYPEDESC) == 16 && sizeof(ELEMDESC) == 32 && sizeof(FUNCDESC) == 88 &&
                  sizeof(TYPEATTR) == 96 && sizeof(TLIBATTR) == 32,
              "published layouts: descriptions cross the boundary by pointer");

/// The description of one interface. A function is a getter, a setter or a method; a getter and its
/// setter are two functions with one identifier. Unlike the objects, it may be used by several threads.
class ITypeInfo : public IUnknown
{
public:
    virtual HRESULT GetTypeAttr(TYPEATTR** attributes) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT GetFuncDesc(UINT index, FUNCDESC** description) = 0;
    virtual HRESULT GetVarDesc(UINT index, VARDESC** description) = 0;
    virtual HRESULT GetNames(MEMBERID member, BSTR* names, UINT room, UINT* count) = 0;
    virtual HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* type) = 0;
    virtual HRESULT GetImplTypeFlags(UINT index, INT* flags) = 0;
    virtual HRESULT GetIDsOfNames(wchar_t** names, UINT count, MEMBERID* identifiers) = 0;
    virtual HRESULT Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;
    virtual HRESULT GetDocumentation(MEMBERID member, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    virtual HRESULT GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* dll, BSTR* name, WORD* ordinal) = 0;
    virtual HRESULT GetRefTypeInfo(HREFTYPE type, ITypeInfo** typeInfo) = 0;
    virtual HRESULT AddressOfMember(MEMBERID member, INVOKEKIND kind, void** address) = 0;
    virtual HRESULT CreateInstance(IUnknown* outer, const GUID& riid, void** object) = 0;
    virtual HRESULT GetMops(MEMBERID member, BSTR* mops) = 0;
    virtual HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
    virtual void ReleaseTypeAttr(TYPEATTR* attributes) = 0;
    virtual void ReleaseFuncDesc(FUNCDESC* description) = 0;
    virtual void ReleaseVarDesc(VARDESC* description) = 0;

protected:
    ~ITypeInfo() = default;
};

/// A loaded type library.
class ITypeLib : public IUnknown
{
public:
    virtual UINT GetTypeInfoCount() = 0;
    virtual HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    virtual HRESULT GetTypeInfoOfGuid(const GUID& guid, ITypeInfo** typeInfo) = 0;
    virtual HRESULT GetLibAttr(TLIBATTR** attributes) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT GetDocumentation(INT index, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    virtual HRESULT IsName(wchar_t* name, ULONG hash, INT* isName) = 0;
    virtual HRESULT FindName(wchar_t* name, ULONG hash, ITypeInfo** typeInfos, MEMBERID* members,
                             USHORT* count) = 0;
    virtual void ReleaseTLibAttr(TLIBATTR* attributes) = 0;

protected:
    ~ITypeLib() = default;
};

extern "C" [[gnu::visibility("default")]] const GUID IID_ITypeInfo;
extern "C" [[gnu::visibility("default")]] const GUID IID_ITypeLib;
