/// \file
/// The type-library service: registers and loads type libraries.

#pragma once

#include "export.h"
#include "typeinfo.h"

/// The type-library service. The service has one registry of paths for the whole process. It also keeps every
/// type library that the process has loaded.
///
/// Threads: all functions may be called from several threads at once. While one thread reads a file, other
/// threads do not have to wait until the file is read.
///
/// After `fork`, the child process has the registrations and the loaded type libraries of the parent process,
/// and can always use them. If a thread of the parent process calls `fork` while another thread is using Qt,
/// the child process cannot load any other type library.
namespace KelTypelib
{

/// The size of a path buffer in wide characters, including the terminating zero.
constexpr unsigned PathCapacity = 1024;

/// Finds the path of a registered type library.
/// \param library the identifier of the type library
/// \param path receives the zero-terminated path; must have room for `PathCapacity` characters
/// \return `S_OK`; `E_POINTER` if `path` is null; `TYPE_E_LIBNOTREGISTERED` if no path is registered. On
///         failure, `path` is unchanged
KEL_EXPORT HRESULT GetTlbFilePath(const GUID& library, wchar_t* path);

/// Loads a type library. The first call for a path reads the file, and later calls for the same path return
/// the same `ITypeLib`. After a path is registered again, the next call for that path reads the file again.
/// An `ITypeLib` that an earlier call returned does not change. For files with equal contents, all calls
/// return the same `ITypeLib`.
/// \param path the path of a local file
/// \param library receives the type library; unchanged on failure. The service owns the type library, so the
///        caller does not release it. An `ITypeInfo` from the type library stays valid as long as the caller
///        holds a reference to the `ITypeInfo`
/// \return `S_OK`; `E_POINTER` if an argument is null; `TYPE_E_CANTLOADLIBRARY` if the file is missing,
///         unreadable or not a regular file, or at exit, after Qt's codecs are destroyed;
///         `TYPE_E_INVDATAREAD` if the file is too large or is not a valid type library
KEL_EXPORT HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library);

/// Registers the path of a type library under an identifier. Replaces the path that was registered under this
/// identifier before, if any. Does not open the file, but makes the next call of `LoadTypeLib` for this path
/// read the file. So register the path again after you replace the file.
/// \param library the identifier of the type library, such as `LIBID_MSXML`
/// \param path the zero-terminated path, which the service copies
/// \return `S_OK`; `E_INVALIDARG` if `path` is null, is empty or has `PathCapacity` or more characters
KEL_EXPORT HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path);

/// Removes the registration of a path. Type libraries that are loaded stay loaded.
/// \param library the identifier under which the path is registered
/// \return `S_OK`; `TYPE_E_LIBNOTREGISTERED` if no path is registered
KEL_EXPORT HRESULT UnRegisterTypeLib(const GUID& library);

} // namespace KelTypelib
