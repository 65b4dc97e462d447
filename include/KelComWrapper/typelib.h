/// \file
/// The type-library service: registers and loads type libraries.

#pragma once

#include "export.h"
#include "typeinfo.h"

/// The type-library service: a registry that belongs to the process, and the libraries it has loaded.
///
/// Threads: all functions may be called from several threads at once. No thread waits while another reads a
/// file.
///
/// After `fork`, the child has the parent's registrations and loaded libraries, and can use them whatever the
/// parent's other threads were doing. Loading another library in the child works only if none of those
/// threads was using Qt at the time.
namespace KelTypelib
{

/// The size of a path buffer in wide characters, the ending zero included.
constexpr unsigned PathCapacity = 1024;

/// Finds the path of a registered type library.
/// \param library the identifier it was registered with
/// \param path receives the zero-ended path; must hold `PathCapacity` characters
/// \return `S_OK`; `E_POINTER`; `TYPE_E_LIBNOTREGISTERED`, `path` unchanged
KEL_EXPORT HRESULT GetTlbFilePath(const GUID& library, wchar_t* path);

/// Loads a type library. A file is read once, and once more after each registration of its path. Equal
/// contents return the same library. Libraries that callers already have stay unchanged.
/// \param path a local file
/// \param library receives the library, borrowed: the service owns it and the caller does not release it; an
///        `ITypeInfo` obtained from it keeps what it needs alive. Written on success only
/// \return `S_OK`; `E_POINTER`; `TYPE_E_CANTLOADLIBRARY` for a file that is missing,
///         unreadable or not a regular one; `TYPE_E_INVDATAREAD` for one that is not a valid type library
KEL_EXPORT HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library);

/// Registers a path for an identifier, replacing any earlier one. Does not open the file, but makes the next
/// load read it again: this is how a host announces a replaced file.
/// \param library the identifier, such as `LIBID_MSXML`
/// \param path zero-ended; it is copied
/// \return `S_OK`; `E_INVALIDARG` for a path that is null, empty or too long for `PathCapacity`
KEL_EXPORT HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path);

/// Removes a registration; loaded libraries stay loaded.
/// \param library the identifier that was registered
/// \return `S_OK`; `TYPE_E_LIBNOTREGISTERED`
KEL_EXPORT HRESULT UnRegisterTypeLib(const GUID& library);

} // namespace KelTypelib
