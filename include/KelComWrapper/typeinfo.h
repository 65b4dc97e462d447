/// \file
/// `ITypeLib` and `ITypeInfo` describe interfaces. The structures in this file have the published layouts.

#pragma once

#include "dispatch.h"
#include "export.h"

class ITypeComp;
class ITypeLib;

/// The kind of a type. Every interface in `xmldom.tlb` is a `TKIND_DISPATCH`.
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
/// How a function is called. This library uses only `FUNC_PUREVIRTUAL`: a call goes through a vtable slot.
enum FUNCKIND : std::int32_t { FUNC_VIRTUAL, FUNC_PUREVIRTUAL, FUNC_NONVIRTUAL, FUNC_STATIC, FUNC_DISPATCH };
/// The kind of a function. Each value equals the `DISPATCH_` flag for that kind.
enum INVOKEKIND : std::int32_t {
    INVOKE_FUNC = 1,           ///< a method
    INVOKE_PROPERTYGET = 2,    ///< a getter
    INVOKE_PROPERTYPUT = 4,    ///< a setter
    INVOKE_PROPERTYPUTREF = 8, ///< a setter that takes an object
};
/// The calling convention of a function. This library uses only `CC_CDECL`, the platform's default.
enum CALLCONV : std::int32_t { CC_CDECL = 1, CC_STDCALL = 4 };

constexpr WORD TYPEFLAG_FDUAL = 0x40;           ///< members can be called by name, and through the vtable
constexpr WORD TYPEFLAG_FDISPATCHABLE = 0x1000; ///< the interface is derived from `IDispatch`
constexpr USHORT PARAMFLAG_FIN = 1;             ///< the member reads the argument
constexpr USHORT PARAMFLAG_FOUT = 2;            ///< the argument is a pointer through which the member writes
constexpr USHORT PARAMFLAG_FRETVAL = 8;         ///< the pointer through which the member returns its result
constexpr USHORT PARAMFLAG_FOPT = 16;           ///< the argument may be left out

// The structures below describe types. The type library owns the structures. A caller must not change a
// structure, and may read a structure only while holding a reference to the `ITypeInfo` or `ITypeLib` that
// returned the structure. Structure members that this library does not use are 0 or null.

/// A type.
struct TYPEDESC
{
    union {
        TYPEDESC* lptdesc; ///< for `VT_PTR`: the type that the pointer points to
        void* lpadesc;     ///< for `VT_ARRAY`, which this library never uses
        HREFTYPE hreftype; ///< for `VT_USERDEFINED`: the number of the type in its type library
    };
    VARTYPE vt; ///< a value of `VARENUM`; says which member of the union is used
};
/// How a parameter is passed.
struct PARAMDESC
{
    void* pparamdescex; ///< null, because no parameter has a default value
    USHORT wParamFlags; ///< the sum of the `PARAMFLAG_` constants that apply
};
/// How a parameter is passed: the older form of `PARAMDESC`, with the same flags.
struct IDLDESC
{
    std::uintptr_t dwReserved; ///< 0
    USHORT wIDLFlags;          ///< the sum of the `PARAMFLAG_` constants that apply
};
/// One parameter of a function, or the return type of a function.
struct ELEMDESC
{
    TYPEDESC tdesc; ///< the type of the parameter, or the return type
    union {
        IDLDESC idldesc;     ///< how the parameter is passed
        PARAMDESC paramdesc; ///< how the parameter is passed
    };
};

/// A function: a getter, a setter or a method. Each function has its own vtable slot.
struct FUNCDESC
{
    MEMBERID memid;   ///< the member's identifier, the same for a getter and its setter
    SCODE* lprgscode; ///< null, because failure codes are not listed
    /// The parameters in order. The pointer to the result comes last. Null if there are no parameters.
    ELEMDESC* lprgelemdescParam;
    FUNCKIND funckind;     ///< `FUNC_PUREVIRTUAL`
    INVOKEKIND invkind;    ///< getter, setter or method
    CALLCONV callconv;     ///< `CC_CDECL`
    SHORT cParams;         ///< the number of parameters, including the pointer to the result
    SHORT cParamsOpt;      ///< the number of optional parameters
    SHORT oVft;            ///< the offset of the function's slot in the vtable, in bytes
    SHORT cScodes;         ///< 0
    ELEMDESC elemdescFunc; ///< the return type: `VT_HRESULT`
    WORD wFuncFlags;       ///< 0
};

/// An interface.
struct TYPEATTR
{
    GUID guid;                 ///< the identifier of the interface
    LCID lcid;                 ///< 0
    DWORD dwReserved;          ///< 0
    MEMBERID memidConstructor; ///< `MEMBERID_NIL`
    MEMBERID memidDestructor;  ///< `MEMBERID_NIL`
    wchar_t* lpstrSchema;      ///< null
    ULONG cbSizeInstance;      ///< the size of a pointer to the interface, in bytes
    TYPEKIND typekind;         ///< `TKIND_DISPATCH`
    WORD cFuncs;         ///< the number of functions, including inherited ones, except those of `IDispatch`
    WORD cVars;          ///< 0
    WORD cImplTypes;     ///< 0
    WORD cbSizeVft;      ///< the size of the vtable in bytes, including the slots of `IDispatch`
    WORD cbAlignment;    ///< the alignment of a pointer to the interface, in bytes
    WORD wTypeFlags;     ///< `TYPEFLAG_FDUAL` and `TYPEFLAG_FDISPATCHABLE`
    WORD wMajorVerNum;   ///< the major version of the type library
    WORD wMinorVerNum;   ///< the minor version of the type library
    TYPEDESC tdescAlias; ///< all 0
    IDLDESC idldescType; ///< all 0
};

struct VARDESC;
/// A type library.
struct TLIBATTR
{
    GUID guid;            ///< the identifier of the type library
    LCID lcid;            ///< 0
    std::int32_t syskind; ///< 0
    WORD wMajorVerNum;    ///< the major version of the type library
    WORD wMinorVerNum;    ///< the minor version of the type library
    WORD wLibFlags;       ///< 0
};

static_assert(sizeof(TYPEDESC) == 16 && sizeof(ELEMDESC) == 32 && sizeof(FUNCDESC) == 88 &&
                  sizeof(TYPEATTR) == 96 && sizeof(TLIBATTR) == 32,
              "hosts read these structures through pointers, so the layouts are fixed");

/// Describes one interface. A member of the interface is a method or a property. A method is one function.
/// The getter and the setter of a property are two functions with the same identifier. Several threads may
/// use one `ITypeInfo` at the same time. An `ITypeInfo` keeps its type library alive. The type library owns
/// the structures that the `ITypeInfo` returns, so these structures live at least as long as the `ITypeInfo`.
class ITypeInfo : public IUnknown
{
public:
    /// Returns the attributes of the interface.
    /// \param attributes receives a pointer that is valid until `ReleaseTypeAttr`
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetTypeAttr(TYPEATTR** attributes) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    /// Returns a function by its position.
    /// \param index counted from 0, in the order of the vtable slots, so inherited functions come first
    /// \param description receives a pointer that is valid until `ReleaseFuncDesc`; receives null if `index`
    ///        is out of range
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetFuncDesc(UINT index, FUNCDESC** description) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetVarDesc(UINT index, VARDESC** description) = 0;
    /// Returns several names: the name of a member, then the names of its parameters, then the name of its
    /// result. If a getter and a setter have the identifier `member`, the names belong to the function whose
    /// vtable slot comes first. For a setter, the parameter with the new value of the property is left out.
    /// \param member the member's identifier
    /// \param names receives the names as new BSTRs, which the caller frees
    /// \param room how many names fit in `names`
    /// \param count receives how many names were written; 0 on failure; unchanged for `E_POINTER`
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`; `E_OUTOFMEMORY`
    virtual HRESULT GetNames(MEMBERID member, BSTR* names, UINT room, UINT* count) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* type) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetImplTypeFlags(UINT index, INT* flags) = 0;
    /// Looks up the identifiers of a member and of its parameters, as `IDispatch::GetIDsOfNames` describes.
    virtual HRESULT GetIDsOfNames(wchar_t** names, UINT count, MEMBERID* identifiers) = 0;
    /// Calls a member of an object through the object's vtable. This `ITypeInfo` describes one interface:
    /// `instance` must be the object's pointer to that interface. The object stays alive until the call
    /// returns. `IDispatch::Invoke` explains the other parameters and the result codes. In addition, this
    /// function returns `E_INVALIDARG` if `instance` is null.
    virtual HRESULT Invoke(void* instance, MEMBERID member, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* badArgument) = 0;
    /// Returns the name of a member or of the interface. There is no documentation and no help. Any
    /// out-pointer may be null.
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
    /// Returns the type library that contains this description.
    /// \param library receives the library with one reference, which the caller releases
    /// \param index receives the index for which `ITypeLib::GetTypeInfo` returns this interface; may be null
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
    /// Ends the caller's use of the attributes. Nothing is freed, because the type library owns the
    /// attributes.
    virtual void ReleaseTypeAttr(TYPEATTR* attributes) = 0;
    /// Ends the caller's use of a function description. Nothing is freed, because the type library owns the
    /// description.
    virtual void ReleaseFuncDesc(FUNCDESC* description) = 0;
    /// Does nothing, because an interface has no variables.
    virtual void ReleaseVarDesc(VARDESC* description) = 0;

protected:
    ~ITypeInfo() = default;
};

/// A loaded type library. Several threads may use one `ITypeLib` at the same time.
class ITypeLib : public IUnknown
{
public:
    /// \return how many interfaces the library describes
    virtual UINT GetTypeInfoCount() = 0;
    /// Returns the description of an interface by its position.
    /// \param index the position of the interface in the type library's file, counted from 0
    /// \param typeInfo receives a new object with one reference, which the caller releases; receives null if
    ///        `index` is out of range
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfo(UINT index, ITypeInfo** typeInfo) = 0;
    /// Returns the kind of an interface by its position.
    /// \param index the position of the interface in the type library's file, counted from 0
    /// \param kind receives `TKIND_DISPATCH`; unchanged on failure
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    /// Returns the description of the interface with the identifier `guid`.
    /// \param guid the identifier of the interface
    /// \param typeInfo receives a new object with one reference, which the caller releases; receives null if
    ///        the library does not describe the interface
    /// \return `S_OK`; `E_POINTER`; `TYPE_E_ELEMENTNOTFOUND`
    virtual HRESULT GetTypeInfoOfGuid(const GUID& guid, ITypeInfo** typeInfo) = 0;
    /// Returns the attributes of the library.
    /// \param attributes receives a pointer that is valid until `ReleaseTLibAttr`
    /// \return `S_OK`; `E_POINTER`
    virtual HRESULT GetLibAttr(TLIBATTR** attributes) = 0;
    /// Not implemented: returns `E_NOTIMPL` and writes nothing.
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    /// Returns the name of an interface or of the type library. There is no documentation and no help. Any
    /// out-pointer may be null.
    /// \param index the position of the interface, counted from 0, or -1 for the type library
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
    /// Ends the caller's use of the attributes. Nothing is freed, because the type library owns the
    /// attributes.
    virtual void ReleaseTLibAttr(TLIBATTR* attributes) = 0;

protected:
    ~ITypeLib() = default;
};

/// The identifier of `ITypeInfo`.
extern "C" KEL_EXPORT const GUID IID_ITypeInfo;
/// The identifier of `ITypeLib`.
extern "C" KEL_EXPORT const GUID IID_ITypeLib;
