/// \file
/// ITypeLib and ITypeInfo: descriptions of interfaces, in the published layouts.

#pragma once

#include "dispatch.h"
#include "export.h"

class ITypeComp;
class ITypeLib;

/// The kind of a type. All interfaces described here are `TKIND_DISPATCH`.
enum TYPEKIND : std::int32_t {
    TKIND_ENUM = 0,
    TKIND_RECORD = 1,
    TKIND_MODULE = 2,
    TKIND_INTERFACE = 3,
    TKIND_DISPATCH = 4, ///< an interface whose members can be called by name
    TKIND_COCLASS = 5,
    TKIND_ALIAS = 6,
    TKIND_UNION = 7,
};
/// How a function is called. Here it is always `FUNC_PUREVIRTUAL`, through its slot.
enum FUNCKIND : std::int32_t { FUNC_VIRTUAL, FUNC_PUREVIRTUAL, FUNC_NONVIRTUAL, FUNC_STATIC, FUNC_DISPATCH };
/// The kind of a function, with the values of the `DISPATCH_` flags.
enum INVOKEKIND : std::int32_t {
    INVOKE_FUNC = 1,           ///< a method
    INVOKE_PROPERTYGET = 2,    ///< a getter
    INVOKE_PROPERTYPUT = 4,    ///< a setter
    INVOKE_PROPERTYPUTREF = 8, ///< a setter that takes an object
};
/// The calling convention of a slot. Here it is always `CC_CDECL`, the platform's own.
enum CALLCONV : std::int32_t { CC_CDECL = 1, CC_STDCALL = 4 };

constexpr WORD TYPEFLAG_FDUAL = 0x40;           ///< members can be called through slots and by name
constexpr WORD TYPEFLAG_FDISPATCHABLE = 0x1000; ///< begins with `IDispatch`
constexpr USHORT PARAMFLAG_FIN = 1;             ///< read by the member
constexpr USHORT PARAMFLAG_FOUT = 2;            ///< a pointer through which the member writes
constexpr USHORT PARAMFLAG_FRETVAL = 8;         ///< the result of a call by name
constexpr USHORT PARAMFLAG_FOPT = 16;           ///< optional

// The descriptions. They belong to the type library: callers only read them, while they hold the object that
// returned them. Unused members are 0 or null.

/// A type.
struct TYPEDESC
{
    union {
        TYPEDESC* lptdesc; ///< of `VT_PTR`: the type that is pointed to
        void* lpadesc;     ///< of `VT_ARRAY`: never used here
        HREFTYPE hreftype; ///< of `VT_USERDEFINED`: the type's number in the library
    };
    VARTYPE vt; ///< a value of `VARENUM`
};
/// How a parameter is passed.
struct PARAMDESC
{
    void* pparamdescex; ///< null: no parameter has a default value
    USHORT wParamFlags; ///< the sum of the `PARAMFLAG_` constants that apply
};
/// The same as `PARAMDESC`, as older callers read it.
struct IDLDESC
{
    std::uintptr_t dwReserved; ///< 0
    USHORT wIDLFlags;          ///< the sum of the `PARAMFLAG_` constants that apply
};
/// A parameter, or the return type of a slot.
struct ELEMDESC
{
    TYPEDESC tdesc; ///< its type
    union {
        IDLDESC idldesc;     ///< how it is passed
        PARAMDESC paramdesc; ///< how it is passed
    };
};

/// A function: a getter, a setter or a method, each with a slot of its own.
struct FUNCDESC
{
    MEMBERID memid;              ///< the member; a getter and its setter share one
    SCODE* lprgscode;            ///< null: failure codes are not listed
    ELEMDESC* lprgelemdescParam; ///< the slot's parameters in order, the pointer to the result last; null if
                                 ///< there are none
    FUNCKIND funckind;           ///< `FUNC_PUREVIRTUAL`
    INVOKEKIND invkind;          ///< getter, setter or method
    CALLCONV callconv;           ///< `CC_CDECL`
    SHORT cParams;               ///< how many parameters the slot has, including the pointer to the result
    SHORT cParamsOpt;            ///< how many of them are optional
    SHORT oVft;                  ///< offset of the slot in the vtable, in bytes
    SHORT cScodes;               ///< 0
    ELEMDESC elemdescFunc;       ///< the return type: `VT_HRESULT`
    WORD wFuncFlags;             ///< 0
};

/// An interface.
struct TYPEATTR
{
    GUID guid;                 ///< its identifier
    LCID lcid;                 ///< 0
    DWORD dwReserved;          ///< 0
    MEMBERID memidConstructor; ///< `MEMBERID_NIL`
    MEMBERID memidDestructor;  ///< `MEMBERID_NIL`
    wchar_t* lpstrSchema;      ///< null
    ULONG cbSizeInstance;      ///< bytes of a pointer to the interface
    TYPEKIND typekind;         ///< `TKIND_DISPATCH`
    WORD cFuncs;               ///< how many functions it has, inherited ones included, without `IDispatch`'s
    WORD cVars;                ///< 0
    WORD cImplTypes;           ///< 0
    WORD cbSizeVft;            ///< bytes of the vtable, the slots of `IDispatch` included
    WORD cbAlignment;          ///< alignment of a pointer to the interface, in bytes
    WORD wTypeFlags;           ///< `TYPEFLAG_FDUAL` and `TYPEFLAG_FDISPATCHABLE`
    WORD wMajorVerNum;         ///< of the library's version
    WORD wMinorVerNum;         ///< of the library's version
    TYPEDESC tdescAlias;       ///< all 0
    IDLDESC idldescType;       ///< all 0
};

struct VARDESC;
/// A type library.
struct TLIBATTR
{
    GUID guid;            ///< its identifier
    LCID lcid;            ///< 0
    std::int32_t syskind; ///< 0
    WORD wMajorVerNum;    ///< of its version
    WORD wMinorVerNum;    ///< of its version
    WORD wLibFlags;       ///< 0
};

static_assert(sizeof(TYPEDESC) == 16 && sizeof(ELEMDESC) == 32 && sizeof(FUNCDESC) == 88 &&
                  sizeof(TYPEATTR) == 96 && sizeof(TLIBATTR) == 32,
              "published layouts: descriptions cross the boundary by pointer");

/// The description of one interface. A function is a getter, a setter or a method; a getter and its setter
/// are two functions with one identifier. Several threads may use it, unlike the objects. It keeps its
/// library and all descriptions it has returned alive.
class ITypeInfo : public IUnknown
{
public:
    /// \param attributes receives the interface's attributes, lent until `ReleaseTypeAttr`
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetTypeAttr(TYPEATTR** attributes) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    /// \param index from 0, in slot order, inherited functions first
    /// \param description receives the function, lent until `ReleaseFuncDesc`; null if out of range
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetFuncDesc(UINT index, FUNCDESC** description) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetVarDesc(UINT index, VARDESC** description) = 0;
    /// Returns the names of a member and of the parameters of its first function, the result last. The value
    /// of a setter has no name.
    /// \param member the member's identifier
    /// \param names receives the names as new BSTRs, which the caller frees
    /// \param room how many names fit
    /// \param count receives how many were written; 0 on failure
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`; `E_OUTOFMEMORY`
    virtual HRESULT GetNames(MEMBERID member, BSTR* names, UINT room, UINT* count) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* type) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetImplTypeFlags(UINT index, INT* flags) = 0;
    /// See `IDispatch::GetIDsOfNames`.
    virtual HRESULT GetIDsOfNames(wchar_t** names, UINT count, MEMBERID* identifiers) = 0;
    /// Calls a member of `instance` through the object's own vtable. `instance` must point to this interface
    /// of the object, and stays alive during the call. See `IDispatch::Invoke` for the other arguments and
    /// the codes; `E_INVALIDARG` for a null `instance`.
    virtual HRESULT Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;
    /// Returns the name of a member or of the interface, and nothing else. Any output may be null.
    /// \param member the member's identifier, or `MEMBERID_NIL` for the interface
    /// \param name receives a new BSTR, which the caller frees; null on failure
    /// \param documentation receives null
    /// \param helpContext receives 0
    /// \param helpFile receives null
    /// \return `S_OK`; `TYPE_E_ELEMENTNOTFOUND`; `E_OUTOFMEMORY`
    virtual HRESULT GetDocumentation(MEMBERID member, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetDllEntry(MEMBERID member, INVOKEKIND kind, BSTR* dll, BSTR* name, WORD* ordinal) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetRefTypeInfo(HREFTYPE type, ITypeInfo** typeInfo) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT AddressOfMember(MEMBERID member, INVOKEKIND kind, void** address) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT CreateInstance(IUnknown* outer, const GUID& riid, void** object) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetMops(MEMBERID member, BSTR* mops) = 0;
    /// \param library receives the library with one reference, which the caller releases
    /// \param index receives the interface's index in `ITypeLib::GetTypeInfo`; may be null
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
    /// Ends the use of attributes. They are part of the library, so nothing is freed.
    virtual void ReleaseTypeAttr(TYPEATTR* attributes) = 0;
    /// Ends the use of a function. It is part of the library, so nothing is freed.
    virtual void ReleaseFuncDesc(FUNCDESC* description) = 0;
    /// Does nothing: there are no variables.
    virtual void ReleaseVarDesc(VARDESC* description) = 0;

protected:
    ~ITypeInfo() = default;
};

/// A loaded type library. Several threads may use it.
class ITypeLib : public IUnknown
{
public:
    /// \return how many interfaces it describes
    virtual UINT GetTypeInfoCount() = 0;
    /// \param index from 0, in the order of the file
    /// \param typeInfo receives a new description with one reference, which the caller releases; null if out
    ///        of range
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) = 0;
    /// \param index from 0, in the order of the file
    /// \param kind receives `TKIND_DISPATCH`
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    /// \param guid the identifier of an interface
    /// \param typeInfo receives a new description with one reference, which the caller releases; null for an
    ///        interface that is not described
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfoOfGuid(const GUID& guid, ITypeInfo** typeInfo) = 0;
    /// \param attributes receives the library's attributes, lent until `ReleaseTLibAttr`
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetLibAttr(TLIBATTR** attributes) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    /// Returns the name of an interface or of the library, and nothing else. Any output may be null.
    /// \param index the interface's, or -1 for the library
    /// \param name receives a new BSTR, which the caller frees; null on failure
    /// \param documentation receives null
    /// \param helpContext receives 0
    /// \param helpFile receives null
    /// \return `S_OK`; `TYPE_E_ELEMENTNOTFOUND`; `E_OUTOFMEMORY`
    virtual HRESULT GetDocumentation(INT index, BSTR* name, BSTR* documentation, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT IsName(wchar_t* name, ULONG hash, INT* isName) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT FindName(wchar_t* name, ULONG hash, ITypeInfo** typeInfos, MEMBERID* members,
                             USHORT* count) = 0;
    /// Ends the use of attributes. They are part of the library, so nothing is freed.
    virtual void ReleaseTLibAttr(TLIBATTR* attributes) = 0;

protected:
    ~ITypeLib() = default;
};

/// The identifier of `ITypeInfo`.
extern "C" KEL_EXPORT const GUID IID_ITypeInfo;
/// The identifier of `ITypeLib`.
extern "C" KEL_EXPORT const GUID IID_ITypeLib;
