// Reading and writing of documents. The library answers only that it could not; so what is wrong is found out
// here.

#include "files.h"

#include "descriptor.h"
#include "terminal.h"
#include "text.h"

#include <QtCore/QFile>
#include <QtXml/QDomDocument>

#include <cerrno>
#include <iostream>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host
{
namespace
{

constexpr wchar_t kStandard[] = L"-";
/// More than the library takes, so that it still refuses what was cut off here.
constexpr std::uintmax_t kMostRead = (std::uintmax_t{512} << 20U) + 1;

std::string readName(const std::wstring& path)
{
    return path == kStandard ? "the standard input" : '\'' + toUtf8(path) + '\'';
}

std::string writtenName(const std::wstring& path)
{
    return path == kStandard ? "the standard output" : '\'' + toUtf8(path) + '\'';
}

bool isRegular(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

std::uintmax_t sizeOf(const Descriptor& file)
{
    struct stat status = {};
    return fstat(file.number(), &status) == 0 ? static_cast<std::uintmax_t>(status.st_size) : 0;
}

/// A file that can be read as often as needed: what can be read only once is taken into memory.
Descriptor openInput(const std::wstring& path)
{
    Descriptor opened;
    if (path != kStandard) {
        opened = Descriptor(open(toUtf8(path).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
        if (opened.number() < 0)
            throw std::system_error(errno, std::generic_category());
        if (isRegular(opened.number()))
            return opened;
    }
    const int source = path == kStandard ? STDIN_FILENO : opened.number();
    std::optional<Progress> progress;
    if (!isatty(source)) // where somebody is typing
        progress.emplace("reading " + readName(path));
    Descriptor kept = makeFileInMemory();
    copyBytes(source, kept.number(), kMostRead);
    return kept;
}

/// Asks Qt, which the library does not keep the reason of. The library has let Qt have the text already.
std::string whereNotWellFormed(const Descriptor& input)
{
    QFile file(QString::fromStdWString(input.place()));
    QDomDocument document;
    QString reason;
    int line = 0;
    int column = 0;
    if (!file.open(QIODevice::ReadOnly) || document.setContent(&file, &reason, &line, &column))
        return {};
    return ", line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
           reason.toStdString();
}

/// What is beyond the limits leaves an earlier tree as it was; what is not well-formed takes its place as far
/// as it goes.
std::string whyRefused(const Library& library, const Descriptor& input)
{
    if (sizeOf(input) == 0)
        return "it is empty";
    constexpr wchar_t kEarlier[] = L"kelxml-earlier";
    const auto document = library.newDocument();
    kel::check(document->loadXML(kel::Bstr(L"<kelxml-earlier/>").get(), nullptr));
    loadFrom(*document, input.place());
    kel::ComPtr<IXMLDOMNode> first;
    const bool isThere = document->get_firstChild(first.put()) == S_OK;
    return isThere && kel::textOf(*first, &IXMLDOMNode::get_nodeName) == kEarlier
               ? "it is beyond the limits of the library (see LIMITS in 'man kelxml')"
               : "it is not well-formed XML" + whereNotWellFormed(input);
}

} // namespace

bool loadFrom(IXMLDOMDocument& document, const std::wstring& place)
{
    VARIANT_BOOL success = VARIANT_FALSE;
    return document.load(kel::Variant(place).get(), &success) == S_OK && success == VARIANT_TRUE;
}

std::uintmax_t loadBy(const Library& library, const std::wstring& path, const FileWork& load)
{
    const std::string name = readName(path);
    try {
        const Descriptor input = openInput(path);
        const Progress progress("reading " + name);
        if (!load(input.place()))
            throw Failure("cannot read " + name + ": " + whyRefused(library, input));
        return sizeOf(input);
    } catch (const std::system_error& error) {
        throw Failure("cannot read " + name + ": " + error.code().message());
    }
}

std::uintmax_t saveBy(const Library& library, const std::wstring& path, const FileWork& save)
{
    const std::string name = writtenName(path);
    try {
        const Descriptor saved = makeFileInMemory();
        {
            const Progress progress("writing " + name);
            if (!save(saved.place()))
                throw Failure("cannot write " + name + ": the document is too deep for the free stack");
            if (!loadFrom(*library.newDocument(), saved.place()))
                throw Failure("cannot write " + name + ": read again, " + whyRefused(library, saved));
        }
        if (path == kStandard)
            copyBytes(saved.number(), STDOUT_FILENO);
        else
            putIntoPlace(saved.number(), toUtf8(path));
        return sizeOf(saved);
    } catch (const std::system_error& error) {
        throw Failure("cannot write " + name + ": " + error.code().message());
    }
}

kel::ComPtr<IXMLDOMDocument> loadDocument(const Library& library, const std::wstring& path,
                                          std::uintmax_t* size)
{
    auto document = library.newDocument();
    const std::uintmax_t read =
        loadBy(library, path, [&](const std::wstring& place) { return loadFrom(*document, place); });
    if (size)
        *size = read;
    return document;
}

std::uintmax_t saveDocument(const Library& library, IXMLDOMDocument& document, const std::wstring& path)
{
    return saveBy(library, path, [&](const std::wstring& place) {
        return document.save(kel::Variant(place).get()) == S_OK;
    });
}

std::ostream& reportBeside(const std::wstring& path)
{
    return path == kStandard ? std::cerr : std::cout;
}

} // namespace host
