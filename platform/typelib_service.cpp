// The registry of type libraries, and the loading of their files.

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "type_library.h"
#include "type_library_reader.h"

#include <QFile>
#include <ctime>
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
/// A file that was written less than this many seconds ago may be written again without a new time stamp.
constexpr std::time_t kSettlingTime = 2;

struct GuidOrder
{
    bool operator()(const GUID& left, const GUID& right) const noexcept
    {
        return std::memcmp(&left, &right, sizeof(GUID)) < 0;
    }
};

/// What tells a file from another one, or from an earlier state of itself, without reading it.
struct FileState
{
    explicit FileState(const struct stat& status)
        : device(status.st_dev), inode(status.st_ino), size(status.st_size), changed(status.st_ctim),
          isSettled(status.st_ctim.tv_sec + kSettlingTime < std::time(nullptr))
    {}
    bool isSurelySameAs(const FileState& other) const
    {
        return isSettled && device == other.device && inode == other.inode && size == other.size &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }

    dev_t device;
    ino_t inode;
    off_t size;
    timespec changed;
    bool isSettled;
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
    QByteArray name;
    FileState state;
    QByteArray contents;
    kel::ComPtr<TypeLibrary> library;
};

class Service
{
public:
    static Service& instance();

    std::mutex mutex;
    std::map<GUID, std::wstring, GuidOrder> paths;

    HRESULT load(const wchar_t* path, ITypeLib** library);

private:
    ITypeLib* keep(const wchar_t* path, Loaded loaded);

    std::map<std::wstring, Loaded, std::less<>> m_loaded;
    /// Libraries whose file has changed since. They stay: callers have borrowed them.
    std::vector<kel::ComPtr<TypeLibrary>> m_retired;
};

/// Never destroyed: objects that outlive the static ones of this library may still ask for it.
Service& Service::instance()
{
    static Service& service = *new Service;
    return service;
}

HRESULT readFile(const char* path, QByteArray& contents, struct stat& status)
{
    const OpenFile opened(path);
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
    return QFile::decodeName(name) == text ? name : QByteArray();
}

HRESULT Service::load(const wchar_t* path, ITypeLib** library)
{
    const auto known = m_loaded.find(std::wstring_view(path));
    const bool isKnown = known != m_loaded.end();
    const QByteArray name = isKnown ? known->second.name : encoded(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) != 0)
        return TYPE_E_CANTLOADLIBRARY;
    if (isKnown && known->second.state.isSurelySameAs(FileState(status))) {
        *library = known->second.library.get();
        return S_OK;
    }

    QByteArray contents;
    const HRESULT isRead = readFile(name.constData(), contents, status);
    if (FAILED(isRead))
        return isRead;
    if (isKnown && known->second.contents == contents) {
        known->second.state = FileState(status);
        *library = known->second.library.get();
        return S_OK;
    }
    auto description = kelcom::readTypeLibrary(contents);
    if (!description)
        return TYPE_E_INVDATAREAD;
    kel::ComPtr<TypeLibrary> made(new TypeLibrary(std::move(description)));
    *library = keep(path, {name, FileState(status), contents, made});
    return S_OK;
}

ITypeLib* Service::keep(const wchar_t* path, Loaded loaded)
{
    const auto [place, isNew] = m_loaded.try_emplace(path, loaded);
    if (!isNew) {
        m_retired.push_back(place->second.library);
        place->second = std::move(loaded);
    }
    return place->second.library.get();
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
    return S_OK;
}

HRESULT UnRegisterTypeLib(const GUID& library)
{
    Service& service = Service::instance();
    const std::lock_guard lock(service.mutex);
    return service.paths.erase(library) == 1 ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

} // namespace KelTypelib
