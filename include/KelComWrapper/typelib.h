/// \file
/// The type-library service: registers and loads type libraries.

#pragma once

#include "export.h"
#include "typeinfo.h"

/// The type-library service. It keeps one registry for the whole process, and all type libraries that the
/// process has loaded.
///
/// Threads: all functions may be called from several threads at once. While one thread reads a file, the
/// others do not have to wait.
///
/// After `fork`, the child has the parent's registrations and loaded libraries, and can always use them. The
/// child can load another library only if no other thread of the parent was using Qt during the `fork`.
namespace KelTypelib
{

/// The size of a path buffer in wide characters, including the terminating zero.
constexpr unsigned PathCapacity = 1024;

/// Finds the path of a registered type library.
/// \param library the identifier that the path was registered for
/// \param path receives the zero-terminated path; must have room for `PathCapacity` characters
/// \return `S_OK`; `E_POINTER`; `TYPE_E_LIBNOTREGISTERED`. On failure, `path` is unchanged
KEL_EXPORT HRESULT GetTlbFilePath(const GUID& library, wchar_t* path);

/// Loads a type library. The first call for a path reads the file, and later calls return the same library.
/// After the path is registered again, the next call reads the file again. A library that was loaded before
/// does not change. Files with equal contents share one library.
/// \param path a local file
/// \param library receives the library, on success only. The service owns it, and the caller does not release
///        it. An `ITypeInfo` of the library stays valid as long as a reference to it is held
/// \return `S_OK`; `E_POINTER`; `TYPE_E_CANTLOADLIBRARY` if the file is missing, unreadable or not a regular
///         file; `TYPE_E_INVDATAREAD` if the file is not a valid type library
KEL_EXPORT HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library);

/// Registers a path for an identifier, and replaces any earlier path. Does not open the file, but makes the
/// next `LoadTypeLib` read it again. If you replace a file, register its path again.
/// \param library the identifier, such as `LIBID_MSXML`
/// \param path zero-terminated; the service copies it
/// \return `S_OK`; `E_INVALIDARG` if the path is null, empty or longer than `PathCapacity` allows
KEL_EXPORT HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path);

/// Removes a registration. Loaded libraries stay loaded.
/// \param library the identifier that was registered
/// \return `S_OK`; `TYPE_E_LIBNOTREGISTERED`
KEL_EXPORT HRESULT UnRegisterTypeLib(const GUID& library);

} // namespace KelTypelib
