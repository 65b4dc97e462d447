// The registry of type libraries, and the loading of their files.

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "platform/type_library.h"
#include "platform/type_library_reader.h"

#include <QtCore/QFile>
#include <QtCore/QTextCodec>
#include <cwchar>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

using kelcom::TypeLibrary;

/// A hundred times what the XML DOM needs.
constexpr int kMaxFileSize = 1 << 20;

struct GuidOrder
{
    bool operator()(const GUID& left, const GUID& right) const noexcept
    {
        return std::memcmp(&left, &right, sizeof(GUID)) < 0;
    }
};

class OpenFile
{
public:
    /// Does not wait for the other end of a pipe.
    explicit OpenFile(const char* path)
        : m_descriptor(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {}
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int descriptor() const { return m_descriptor; }

private:
    const int m_descriptor;
};

struct Loaded
{
    QByteArray contents;
    kel::ComPtr<TypeLibrary> library;
    bool isUpToDate = true;
};

class Service
{
public:
    static Service& instance();

    std::mutex mutex;
    std::map<GUID, std::wstring, GuidOrder> paths;

    HRESULT load(const wchar_t* path, ITypeLib** library);
    /// Has the file read again when it is next asked for.
    void outdate(const wchar_t* path);

private:
    using LoadedByPath = std::map<std::wstring, Loaded, std::less<>>;

    HRESULT read(const wchar_t* path, LoadedByPath::iterator& place);

    LoadedByPath m_loaded;
    /// Libraries whose file was read anew since. They stay: callers have borrowed them.
    std::vector<kel::ComPtr<TypeLibrary>> m_retired;
};

/// Never destroyed: objects that outlive the static ones of this library may still ask for it.
Service& Service::instance()
{
    static Service& service = *new Service;
    return service;
}

HRESULT readFile(const char* path, QByteArray& contents)
{
    const OpenFile opened(path);
    struct stat status = {};
    if (opened.descriptor() < 0 || ::fstat(opened.descriptor(), &status) != 0 || !S_ISREG(status.st_mode))
        return TYPE_E_CANTLOADLIBRARY;
    if (status.st_size > kMaxFileSize)
        return TYPE_E_INVDATAREAD;
    QFile file;
    if (!file.open(opened.descriptor(), QIODevice::ReadOnly | QIODevice::Unbuffered))
        return TYPE_E_CANTLOADLIBRARY;
    contents = file.read(status.st_size);
    return file.error() == QFileDevice::NoError ? S_OK : TYPE_E_CANTLOADLIBRARY;
}

/// The path in the file system's encoding; empty when that has no room for it: another file's path would
/// result.
QByteArray encoded(const wchar_t* path)
{
    const QString text = QString::fromWCharArray(path);
    const QByteArray name = QFile::encodeName(text);
    const bool isWhole = *path != QChar::ByteOrderMark; // else the conversion has taken that off
    return isWhole && QFile::decodeName(name) == text ? name : QByteArray();
}

HRESULT Service::load(const wchar_t* path, ITypeLib** library)
{
    auto place = m_loaded.find(std::wstring_view(path));
    if (place == m_loaded.end() || !place->second.isUpToDate) {
        const HRESULT hr = read(path, place);
        if (FAILED(hr))
            return hr;
    }
    *library = place->second.library.get();
    return S_OK;
}

/// \param place where the path's library stands, or the end; receives where it stands now
HRESULT Service::read(const wchar_t* path, LoadedByPath::iterator& place)
{
    const bool isKnown = place != m_loaded.end();
    QByteArray contents;
    const HRESULT hr = readFile(encoded(path).constData(), contents);
    if (FAILED(hr))
        return hr;
    if (isKnown && place->second.contents == contents) {
        place->second.isUpToDate = true;
        return S_OK;
    }
    if (!QTextCodec::codecForLocale())
        return TYPE_E_CANTLOADLIBRARY; // late in the process's end, when the parser would miss Qt's codecs
    auto description = kelcom::readTypeLibrary(contents);
    if (!description)
        return TYPE_E_INVDATAREAD;
    Loaded loaded{contents, kel::ComPtr<TypeLibrary>(new TypeLibrary(std::move(description)))};
    if (isKnown) {
        m_retired.push_back(place->second.library);
        place->second = std::move(loaded);
    } else {
        place = m_loaded.emplace(path, std::move(loaded)).first;
    }
    return S_OK;
}

void Service::outdate(const wchar_t* path)
{
    const auto place = m_loaded.find(std::wstring_view(path));
    if (place != m_loaded.end())
        place->second.isUpToDate = false;
}

} // namespace

namespace KelTypelib
{

HRESULT GetTlbFilePath(const GUID& library, wchar_t* path)
{
    if (!path)
        return E_POINTER;
    Service& service = Service::instance();
    const std::lock_guard lock(service.mutex);
    const auto place = service.paths.find(library);
    if (place == service.paths.end())
        return TYPE_E_LIBNOTREGISTERED;
    std::wmemcpy(path, place->second.c_str(), place->second.size() + 1);
    return S_OK;
}

HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library)
{
    if (!path || !library)
        return E_POINTER;
    Service& service = Service::instance();
    const std::lock_guard lock(service.mutex);
    return service.load(path, library);
}

HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path)
{
    if (!path)
        return E_INVALIDARG;
    const std::size_t length = ::wcsnlen(path, PathCapacity);
    if (length == 0 || length == PathCapacity)
        return E_INVALIDARG;
    Service& service = Service::instance();
    const std::lock_guard lock(service.mutex);
    service.paths[library] = std::wstring(path, length);
    service.outdate(path);
    return S_OK;
}

HRESULT UnRegisterTypeLib(const GUID& library)
{
    Service& service = Service::instance();
    const std::lock_guard lock(service.mutex);
    return service.paths.erase(library) == 1 ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

} // namespace KelTypelib
