// Helps tests to create type libraries: adds the correct digest, and writes a file that is deleted after the
// test.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "support/require.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QTemporaryDir>
#include <string>

namespace keltest
{

/// Makes a type library from its `body`, which is everything after the `<library>` tag. Puts the XML
/// declaration and the `<library>` tag, with the digest of `body`, before the body.
inline QByteArray stamped(const QByteArray& body)
{
    const QByteArray digest = QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex();
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<library format=\"1\" digest=\"" + digest + "\">" +
           body;
}

/// A temporary file whose contents a test can overwrite.
struct TypeLibraryFile
{
    explicit TypeLibraryFile(const QByteArray& contents = {}) { write(contents); }

    void write(const QByteArray& contents) const { ::write(path, contents); }
    /// Makes the next `load` read the file again.
    void registerAgain() const { KelTypelib::RegisterTypeLib(GUID{}, widePath.c_str()); }
    HRESULT load(ITypeLib*& library) const { return KelTypelib::LoadTypeLib(widePath.c_str(), &library); }

    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("test.tlb"));
    const std::wstring widePath = path.toStdWString();
};

/// Loads the type information of one interface. \return null if the library cannot be loaded or does not
/// describe the interface
inline kel::ComPtr<ITypeInfo> typeInfo(const wchar_t* path, const GUID& iid)
{
    ITypeLib* library = nullptr;
    kel::ComPtr<ITypeInfo> found;
    if (KelTypelib::LoadTypeLib(path, &library) == S_OK)
        library->GetTypeInfoOfGuid(iid, found.put());
    return found;
}

inline MEMBERID idOf(ITypeInfo& info, std::wstring name)
{
    wchar_t* names[] = {name.data()};
    MEMBERID id = 12345;
    return info.GetIDsOfNames(names, 1, &id) == S_OK ? id : DISPID_UNKNOWN;
}

} // namespace keltest
