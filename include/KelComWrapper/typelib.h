/// \file
/// The type-library service: a registry of the process's own, and the loading of libraries.

#pragma once

#include "export.h"
#include "typeinfo.h"

/// The type-library service. Registry and cache may be used from several threads at once; nothing is kept
/// beyond the life of the process.
namespace KelTypelib
{

/// The room of a path buffer, in wide characters, the ending zero included.
constexpr unsigned PathCapacity = 1024;

/// Finds the path of a registered type library.
/// \param library the identifier that it was registered under
/// \param path receives the zero-ended path; holds `PathCapacity` characters
/// \return `S_OK`; `E_POINTER`; `TYPE_E_LIBNOTREGISTERED`, `path` untouched
KEL_EXPORT HRESULT GetTlbFilePath(const GUID& library, wchar_t* path);

/// Loads a type library. A file is read once, and once more after each registration of its path; the same
/// contents then give the same library. Libraries that were handed out stay as they are.
/// \param path a local file
/// \param library receives the library, borrowed: the service owns it and the caller does not release
///        it; an `ITypeInfo` obtained from it keeps what it needs alive by itself. Written on success only
/// \return `S_OK`; `E_POINTER`; `TYPE_E_CANTLOADLIBRARY` for a file that is missing or unreadable;
///         `TYPE_E_INVDATAREAD` for one that is no valid type library
KEL_EXPORT HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library);

/// Registers a path under an identifier, in place of any earlier one. The file is not looked at now, and is
/// read when it is next loaded: so a host makes a replaced file known.
/// \param library the identifier, such as `LIBID_MSXML`
/// \param path zero-ended; it is copied
/// \return `S_OK`; `E_INVALIDARG` for a path that is null, empty or too long for `PathCapacity`
KEL_EXPORT HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path);

/// Takes a registration back; libraries that are loaded stay loaded.
/// \param library the identifier that was registered
/// \return `S_OK`; `TYPE_E_LIBNOTREGISTERED`
KEL_EXPORT HRESULT UnRegisterTypeLib(const GUID& library);

} // namespace KelTypelib
