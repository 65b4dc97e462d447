// Registers type libraries and loads their files.

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/typelib.h"
#include "platform/file_reader.h"
#include "platform/type_library_object.h"

#include <QtCore/QFile>
#include <QtCore/QTextCodec>
#include <algorithm>
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

/// Maximum size of a type library file in bytes. The type library of the XML DOM has about 15,000 bytes.
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
    /// Opens a file for reading. Does not block, even if `path` names a pipe that no process has opened for
    /// writing.
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
    /// False if the next load must read the file again. This is the case if the path has been registered
    /// again since the file was loaded, or if any path was registered while the file was being read.
    bool isCurrent = false;
};

/// The registered paths and loaded libraries of the process. A function locks the mutex while it searches or
/// changes this data, but never while it reads or parses a file. So no thread waits while another thread
/// reads a file.
class Service
{
public:
    static Service& instance();

    HRESULT registeredPath(const GUID& id, wchar_t* path);
    void add(const GUID& id, std::wstring path);
    bool remove(const GUID& id);
    /// Sets `library` to a borrowed pointer to the library in the file at `path`. Reads the file, unless the
    /// library is already loaded and current.
    HRESULT load(const wchar_t* path, ITypeLib** library);

private:
    /// Looks for a library that was loaded from `path` and is current.
    /// \param registrations receives the number of registrations so far, which the caller must pass to
    ///        `store`
    /// \return false if the file must be read
    bool findCurrent(const wchar_t* path, ITypeLib** library, std::uint64_t& registrations);
    kel::ComPtr<TypeLibrary> findByContents(const QByteArray& contents);
    /// Stores the library that was loaded from `path`. If another thread has already stored a library with
    /// the same contents, sets `library` to the other thread's library. If any path was registered after
    /// `findCurrent` set `registrations`, the next call of `load` for `path` reads the file again.
    void store(const wchar_t* path, const QByteArray& contents, kel::ComPtr<TypeLibrary>& library,
               std::uint64_t registrations);

    std::mutex m_mutex;
    std::map<GUID, std::wstring, GuidOrder> m_paths;
    std::uint64_t m_registrations = 0; ///< the number of calls of `add` so far
    std::map<std::wstring, LoadedFile, std::less<>> m_files;
    /// All libraries that were ever loaded. The key is the contents of the library's file. No library is ever
    /// removed, because callers may still use pointers that they borrowed from `load`.
    std::map<QByteArray, kel::ComPtr<TypeLibrary>> m_libraries;
};

/// Returns the only `Service`. The `Service` is never destroyed, because objects may use it after the static
/// destructors have run. The mutex is locked during `fork`. Otherwise the child process could inherit a mutex
/// that is locked by a thread which does not exist in the child process.
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

/// Returns the path in the file system's encoding, or an empty array if this encoding cannot represent all
/// characters of the path. A path in which some characters are missing could name another file.
QByteArray encoded(const wchar_t* path)
{
    const QString text = QString::fromWCharArray(path);
    const QByteArray name = QFile::encodeName(text);
    const auto isLost = [](wchar_t unit) { return static_cast<char32_t>(unit) > QChar::LastValidCodePoint; };
    const bool isLossless = *path != QChar::ByteOrderMark && // Qt would remove the byte order mark
                            std::none_of(path, path + std::wcslen(path), isLost);
    return isLossless && QFile::decodeName(name) == text ? name : QByteArray();
}

HRESULT makeLibrary(const QByteArray& contents, kel::ComPtr<TypeLibrary>& library)
{
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
    if (!QTextCodec::codecForLocale())
        return TYPE_E_CANTLOADLIBRARY; // paths and the parser need Qt's codecs, which are destroyed at exit
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
