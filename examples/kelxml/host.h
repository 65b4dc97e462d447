// The host's side of the library: it is found, loaded and told so, asked for documents, and unloaded.

#pragma once

#include "KelComWrapper/bstr.h"
#include "KelXmlLib/xmldom.h"

#include "value.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace host
{

/// The work cannot be done; what() is one line for the user.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The command line makes no sense; what() says where.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Keeps the library loaded. Everything obtained from it must be gone before it goes.
class Library
{
public:
    /// Loads libKelXmlLib.so from ../lib as seen from the program, else from where the system looks, and
    /// registers the type library. \throw Failure
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();

    /// Something that the library exports, a function or a constant, by its name. \throw Failure
    template <class Symbol>
    Symbol* symbol(const char* name) const
    {
        return reinterpret_cast<Symbol*>(address(name));
    }

    kel::ComPtr<IXMLDOMDocument> newDocument() const;
    /// A document for a caller that knows nothing but names.
    kel::ComPtr<IDispatch> newLateBoundDocument() const;
    /// The node by the interface of its kind; null when it is of another kind.
    kel::ComPtr<IXMLDOMElement> asElement(IXMLDOMNode& node) const;
    kel::ComPtr<IXMLDOMAttribute> asAttribute(IXMLDOMNode& node) const;

private:
    struct Closer
    {
        void operator()(void* library) const;
    };

    void* address(const char* name) const;
    void* newObject(const GUID& interfaceId) const;
    void registerTypeLibrary() const;
    template <class Interface>
    kel::ComPtr<Interface> as(IXMLDOMNode& node, const char* identifier) const;

    std::unique_ptr<void, Closer> m_library;
};

/// An answer in words, with its code.
std::string describe(HRESULT code);
/// \throw Failure that says what was being done, unless `code` is `S_OK`
void require(HRESULT code, const char* action);

/// Loads a document by `load(path)`, which answers whether it could. \throw Failure that says what is wrong
/// with the file
void loadBy(const std::wstring& path, const std::function<bool(const std::wstring& path)>& load);
/// Saves a document by `save(path)`, which answers whether it could. \throw Failure that says what is wrong
void saveBy(const Library& library, const std::wstring& path,
            const std::function<bool(const std::wstring& path)>& save);
kel::ComPtr<IXMLDOMDocument> loadDocument(const Library& library, const std::wstring& path);
void saveDocument(const Library& library, IXMLDOMDocument& document, const std::wstring& path);
std::uintmax_t fileSize(const std::wstring& path);
/// Looks at a place before a file is written there. \throw Failure
void requireWritable(const std::wstring& path);
/// Reads a file back, for neither saving nor the filer reports what becomes of the writing. \throw Failure
void requireWritten(const Library& library, const std::wstring& path);

} // namespace host
