// Registers type libraries and loads their files.

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "platform/file_reader.h"
#include "platform/type_library_object.h"

#include <QtCore/QFile>
#include <QtCore/QTextCodec>
#include <cwchar>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <pthread.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

using kelcom::TypeLibrary;

/// About seventy times the size of the XML DOM's type library.
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
    /// Does not block on a pipe without a writer.
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

/// The library that was last loaded from a path.
struct LoadedFile
{
    kel::ComPtr<TypeLibrary> library;
    bool isCurrent = false; ///< false once the path is registered again: the file must be re-read
};

/// The registered paths and loaded libraries of the process. The lock is held for lookups and stores, but
/// never while a file is read or parsed. So no thread waits while another thread reads a file.
class Service
{
public:
    static Service& instance();

    HRESULT registeredPath(const GUID& id, wchar_t* path);
    void add(const GUID& id, std::wstring path);
    bool remove(const GUID& id);
    /// Reads the file, unless it is already loaded and current.
    HRESULT load(const wchar_t* path, ITypeLib** library);

private:
    /// Returns false if the file must be read.
    /// \param registrations receives the current number of registrations, to pass to `store`
    bool findCurrent(const wchar_t* path, ITypeLib** library, std::uint64_t& registrations);
    kel::ComPtr<TypeLibrary> findByContents(const QByteArray& contents);
    /// Stores a library. If another thread has stored a library for the same contents first, sets `library`
    /// to that library. If any path was registered after `registrations` was read, the next call of `load`
    /// reads the file again.
    void store(const wchar_t* path, const QByteArray& contents, kel::ComPtr<TypeLibrary>& library,
               std::uint64_t registrations);

    std::mutex m_mutex;
    std::map<GUID, std::wstring, GuidOrder> m_paths;
    std::uint64_t m_registrations = 0; ///< counts the calls of `add`
    std::map<std::wstring, LoadedFile, std::less<>> m_files;
    /// Every library ever loaded, by the contents of its file. None is removed, because callers may have
    /// borrowed any of them.
    std::map<QByteArray, kel::ComPtr<TypeLibrary>> m_libraries;
};

/// Never destroyed, because objects may use it after the static destructors have run. The lock is held during
/// `fork`. Otherwise a child could inherit a lock that is held by a thread that does not exist in the child.
Service& Service::instance()
{
    static Service& service = *[] {
        auto* const created = new Service;
        ::pthread_atfork([] { instance().m_mutex.lock(); }, [] { instance().m_mutex.unlock(); },
                         [] { instance().m_mutex.unlock(); });
        return created;
    }();
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

/// The path in the file system's encoding. Empty if this encoding cannot represent the path, because a
/// path with lost characters could name another file.
QByteArray encoded(const wchar_t* path)
{
    const QString text = QString::fromWCharArray(path);
    const QByteArray name = QFile::encodeName(text);
    const bool isLossless = *path != QChar::ByteOrderMark; // Qt would remove it
    return isLossless && QFile::decodeName(name) == text ? name : QByteArray();
}

HRESULT makeLibrary(const QByteArray& contents, kel::ComPtr<TypeLibrary>& library)
{
    if (!QTextCodec::codecForLocale())
        return TYPE_E_CANTLOADLIBRARY; // the parser needs Qt's codecs, which are destroyed at exit
    auto description = kelcom::readTypeLibrary(contents);
    if (!description)
        return TYPE_E_INVDATAREAD;
    library = kel::ComPtr<TypeLibrary>(new TypeLibrary(std::move(description)));
    return S_OK;
}

HRESULT Service::registeredPath(const GUID& id, wchar_t* path)
{
    const std::lock_guard lock(m_mutex);
    const auto it = m_paths.find(id);
    if (it == m_paths.end())
        return TYPE_E_LIBNOTREGISTERED;
    std::wmemcpy(path, it->second.c_str(), it->second.size() + 1);
    return S_OK;
}

void Service::add(const GUID& id, std::wstring path)
{
    const std::lock_guard lock(m_mutex);
    ++m_registrations;
    if (const auto file = m_files.find(path); file != m_files.end())
        file->second.isCurrent = false;
    m_paths[id] = std::move(path);
}

bool Service::remove(const GUID& id)
{
    const std::lock_guard lock(m_mutex);
    return m_paths.erase(id) == 1;
}

HRESULT Service::load(const wchar_t* path, ITypeLib** library)
{
    std::uint64_t registrations = 0;
    if (findCurrent(path, library, registrations))
        return S_OK;
    QByteArray contents;
    if (const HRESULT hr = readFile(encoded(path).constData(), contents); FAILED(hr))
        return hr;
    auto loaded = findByContents(contents);
    if (!loaded)
        if (const HRESULT hr = makeLibrary(contents, loaded); FAILED(hr))
            return hr;
    store(path, contents, loaded, registrations);
    *library = loaded.get();
    return S_OK;
}

bool Service::findCurrent(const wchar_t* path, ITypeLib** library, std::uint64_t& registrations)
{
    const std::lock_guard lock(m_mutex);
    registrations = m_registrations;
    const auto file = m_files.find(std::wstring_view(path));
    if (file == m_files.end() || !file->second.isCurrent)
        return false;
    *library = file->second.library.get();
    return true;
}

kel::ComPtr<TypeLibrary> Service::findByContents(const QByteArray& contents)
{
    const std::lock_guard lock(m_mutex);
    const auto it = m_libraries.find(contents);
    return it == m_libraries.end() ? nullptr : it->second;
}

void Service::store(const wchar_t* path, const QByteArray& contents, kel::ComPtr<TypeLibrary>& library,
                    std::uint64_t registrations)
{
    const std::lock_guard lock(m_mutex);
    library = m_libraries.emplace(contents, library).first->second;
    m_files[path] = {library, m_registrations == registrations};
}

} // namespace

namespace KelTypelib
{

HRESULT GetTlbFilePath(const GUID& library, wchar_t* path)
{
    return path ? Service::instance().registeredPath(library, path) : E_POINTER;
}

HRESULT LoadTypeLib(const wchar_t* path, ITypeLib** library)
{
    return path && library ? Service::instance().load(path, library) : E_POINTER;
}

HRESULT RegisterTypeLib(const GUID& library, const wchar_t* path)
{
    if (!path)
        return E_INVALIDARG;
    const std::size_t length = ::wcsnlen(path, PathCapacity);
    if (length == 0 || length == PathCapacity)
        return E_INVALIDARG;
    Service::instance().add(library, std::wstring(path, length));
    return S_OK;
}

HRESULT UnRegisterTypeLib(const GUID& library)
{
    return Service::instance().remove(library) ? S_OK : TYPE_E_LIBNOTREGISTERED;
}

} // namespace KelTypelib
