/// \file
/// Loading and saving by a path as C++ callers have it, in UTF-8. Header-only and optional; failures are
/// exceptions (see KelComWrapper/error.h).

#pragma once

#include "KelXmlLib/convenience.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace kel
{

namespace detail
{

/// As `load` and `save` of a document take it. Whatever the locale, the bytes are read as UTF-8;
/// `path::wstring` would go by the locale.
/// \param path of the file
/// \param action for the error
inline Variant pathValue(const std::filesystem::path& path, const std::string& action)
{
    try {
        const std::u32string text = path.u32string();
        if (text.find(U'\0') != std::u32string::npos)
            throw Error(E_INVALIDARG, action, "the path holds a zero");
        return Variant(std::wstring(text.begin(), text.end()));
    } catch (const std::filesystem::filesystem_error&) {
        throw Error(E_INVALIDARG, action, "the path is not UTF-8");
    }
}

} // namespace detail

/// A new document, read from a file.
/// \param path as `char*`, `std::string` or `std::filesystem::path`, in UTF-8. A wide one goes to the
///        document's own `load`
/// \throw Error which names the file and says what is known about it
inline ComPtr<IXMLDOMDocument> load(const std::filesystem::path& path)
{
    const std::string action = "loading '" + path.string() + '\'';
    auto document = newDocument();
    const HRESULT result = document->load(detail::pathValue(path, action).get(), nullptr);
    if (result == S_OK)
        return document;
    std::error_code error;
    const bool isMissing = !std::filesystem::exists(path, error) && !error;
    throw Error(result, action,
                isMissing ? "there is no such file"
                          : "it cannot be read, or holds no well-formed XML within the library's limits");
}

/// Writes a document to a file. That the disk was full is not noticed.
/// \param document is not changed
/// \param path as in `load`
/// \throw Error which names the file
inline void save(IXMLDOMDocument& document, const std::filesystem::path& path)
{
    const std::string action = "saving '" + path.string() + '\'';
    const HRESULT result = document.save(detail::pathValue(path, action).get());
    if (result != S_OK)
        throw Error(result, action,
                    "it cannot be opened for writing, file names cannot hold the path, or the tree is too "
                    "deep for the free stack");
}

} // namespace kel
