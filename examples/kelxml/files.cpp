// Documents from files and into files, and what can be wrong with a file. The library answers only that it
// could not; so the file is looked at before it is asked.

#include "host.h"
#include "text.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace fs = std::filesystem;

namespace host
{
namespace
{

[[noreturn]] void failWithFile(const char* action, const std::string& path, const std::string& reason)
{
    throw Failure(std::string(action) + " '" + path + "': " + reason);
}

void requireReadable(const std::string& path)
{
    constexpr char kAction[] = "cannot read";
    if (path.empty())
        failWithFile(kAction, path, std::strerror(ENOENT));
    if (access(path.c_str(), R_OK) != 0)
        failWithFile(kAction, path, std::strerror(errno));
    std::error_code ignored;
    if (fs::is_directory(path, ignored))
        failWithFile(kAction, path, std::strerror(EISDIR));
}

/// \return whether the file was read and is a document within the library's limits
bool load(IXMLDOMDocument& document, const std::wstring& path)
{
    VARIANT_BOOL success = VARIANT_FALSE;
    return document.load(Value(path).get(), &success) == S_OK && success == VARIANT_TRUE;
}

} // namespace

void loadBy(const std::wstring& path, const std::function<bool(const std::wstring& path)>& load)
{
    requireReadable(toUtf8(path));
    if (!load(path))
        failWithFile("cannot read", toUtf8(path), "not well-formed XML, or beyond the limits of the library");
}

kel::ComPtr<IXMLDOMDocument> loadDocument(const Library& library, const std::wstring& path)
{
    auto document = library.newDocument();
    loadBy(path, [&](const std::wstring& name) { return load(*document, name); });
    return document;
}

void saveBy(const Library& library, const std::wstring& path,
            const std::function<bool(const std::wstring& path)>& save)
{
    requireWritable(path);
    if (!save(path))
        failWithFile("cannot write", toUtf8(path),
                     "the library could not open it or write so deep a document");
    requireWritten(library, path);
}

void saveDocument(const Library& library, IXMLDOMDocument& document, const std::wstring& path)
{
    saveBy(library, path, [&](const std::wstring& name) { return document.save(Value(name).get()) == S_OK; });
}

std::uintmax_t fileSize(const std::wstring& path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(toUtf8(path), error);
    return error ? 0 : size; // a device has no size
}

void requireWritable(const std::wstring& path)
{
    constexpr char kAction[] = "cannot write";
    const std::string name = toUtf8(path);
    if (name.empty())
        failWithFile(kAction, name, std::strerror(ENOENT));
    std::error_code ignored;
    if (fs::is_directory(name, ignored))
        failWithFile(kAction, name, std::strerror(EISDIR));
    const fs::path directory = fs::path(name).parent_path();
    const fs::path place = fs::exists(name, ignored) ? fs::path(name) : directory.empty() ? "." : directory;
    if (access(place.c_str(), W_OK) != 0)
        failWithFile(kAction, name, std::strerror(errno));
}

void requireWritten(const Library& library, const std::wstring& path)
{
    std::error_code ignored;
    if (!fs::is_regular_file(toUtf8(path), ignored))
        return;
    if (!load(*library.newDocument(), path))
        failWithFile("cannot write", toUtf8(path),
                     "what arrived cannot be read again (no space left, or no well-formed document)");
}

} // namespace host
