// The host's side of the library: it is found, loaded and told so, asked for documents, and unloaded.

#pragma once

#include "KelXmlLib/convenience.h"

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
    /// Loads the library and registers the type library, which has its place beside it. \throw Failure
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

    std::unique_ptr<void, Closer> m_library;
};

} // namespace host
