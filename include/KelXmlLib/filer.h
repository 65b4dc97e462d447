/// \file
/// The XML filer, which writes one XML file from the beginning to the end. Create a filer with
/// `morvCreateXmlFiler`, call the filer's write operations in document order, and delete the filer.
///
/// - Status 0 (`eStatusAccepted`) only means that the arguments are valid. The status does not mean that the
///   data is on the disk, because the filer never reports file errors.
/// - The comment of each write operation states the requirements for the arguments. If an argument does not
///   meet the requirements, the operation returns `eStatusInvalidArgument` and writes nothing. Otherwise, the
///   operation returns `eStatusAccepted`. An argument is "missing" if it is null or an empty string.
/// - The filer copies a string argument up to the first zero character. A wide character that is half a
///   surrogate pair or above U+10FFFF is written as U+FFFD.
/// - Threads: use a filer from one thread at a time.

#pragma once

#include "KelComWrapper/export.h"

namespace KelXmlLib
{

/// The requested encoding. The filer ignores the request and always writes UTF-8.
enum eEncoding : int {
    eEncodingDefault = 0, ///< no preference
    eEncodingUtf16 = 1,   ///< UTF-16
    eEncodingUtf8 = 2,    ///< UTF-8; `encoding()` always returns this value
};

/// The result of a write operation.
enum eStatus : int {
    eStatusAccepted = 0,        ///< the arguments are valid; the data may still not reach the file
    eStatusInvalidArgument = 2, ///< an argument is missing or out of range; nothing is written
};

/// The result of `state()`, which never changes.
enum eState : int {
    eStateReady = 6, ///< always returned, even without a file and after `close()`
};

} // namespace KelXmlLib

/// The interface of a filer. Delete a filer through a pointer to this interface.
class KEL_EXPORT IKelXmlFiler
{
public:
    /// Closes the file and frees the filer. Writes no end tags for elements that are still open.
    virtual ~IKelXmlFiler();

    /// \return `eStateReady`, always
    virtual KelXmlLib::eState state() const = 0;
    /// \return `eEncodingUtf8`, always
    virtual KelXmlLib::eEncoding encoding() const = 0;
    /// \return 1 if the filer was created with `autoFormat`, else 0
    virtual int indent() const = 0;
    /// Not implemented. Leaves `buffer` unchanged.
    virtual void newlineChars(wchar_t* buffer, int size) const = 0;

    /// Writes the XML declaration.
    virtual KelXmlLib::eStatus writeDocBegin() = 0;
    /// Ends all open elements.
    virtual KelXmlLib::eStatus writeDocEnd() = 0;
    /// Begins an element.
    /// \param name must not be missing
    virtual KelXmlLib::eStatus writeElmBegin(const wchar_t* name) = 0;
    /// Writes a whole element: the start tag, the text and the end tag. To write an element without a text,
    /// call `writeElmBegin(name)` and then `writeElmEnd()`.
    /// \param name, text must not be missing
    virtual KelXmlLib::eStatus writeElmBegin(const wchar_t* name, const wchar_t* text) = 0;
    /// Ends the innermost open element.
    virtual KelXmlLib::eStatus writeElmEnd() = 0;
    /// Does exactly what `writeElmEnd` does.
    virtual KelXmlLib::eStatus writeElmFullEnd() = 0;
    /// Writes nothing: use `writeAttribute`.
    /// \param name must not be missing
    virtual KelXmlLib::eStatus writeAttrBegin(const wchar_t* name) = 0;
    /// Writes nothing: use `writeAttribute`.
    virtual KelXmlLib::eStatus writeAttrEnd() = 0;
    /// Writes an attribute. Call `writeAttribute` right after `writeElmBegin(name)` or after another call of
    /// `writeAttribute`.
    /// \param name must not be missing
    /// \param value if null or empty, `name=""` is written
    virtual KelXmlLib::eStatus writeAttribute(const wchar_t* name, const wchar_t* value) = 0;
    /// Writes text. Escapes `<`, `>`, `&` and the double quote.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeText(const wchar_t* text) = 0;
    /// Does exactly what `writeText` does, so `writeRawText` escapes markup in spite of its name.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeRawText(const wchar_t* text) = 0;
    /// Writes nothing: use `writeText`.
    virtual KelXmlLib::eStatus writeValue(bool value) = 0;
    /// Writes nothing: use `writeText`.
    virtual KelXmlLib::eStatus writeValue(int value) = 0;
    /// Writes nothing: use `writeText`.
    virtual KelXmlLib::eStatus writeValue(long value) = 0;
    /// Writes nothing: use `writeText`.
    virtual KelXmlLib::eStatus writeValue(float value) = 0;
    /// Writes nothing: use `writeText`.
    virtual KelXmlLib::eStatus writeValue(double value) = 0;
    /// Writes nothing: use `writeText`.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeValue(const wchar_t* text) = 0;
    /// Writes nothing. A filer cannot write a document type.
    /// \param name must not be missing
    /// \param publicId, systemId may be null or empty
    virtual KelXmlLib::eStatus writeDocType(const wchar_t* name, const wchar_t* publicId,
                                            const wchar_t* systemId) = 0;
    /// Writes a CDATA section. Wherever the text contains `]]>`, ends the section and begins a new section.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeCData(const wchar_t* text) = 0;
    /// Writes a comment.
    /// \param text must not be missing. Hyphens are not checked. A text with two hyphens in a row, or with a
    ///        hyphen at its end, gives a file that cannot be loaded
    virtual KelXmlLib::eStatus writeComment(const wchar_t* text) = 0;
    /// Writes nothing: encode the bytes yourself and use `writeText`.
    /// \param data must not be null, although the bytes are not read
    /// \param first must be at least 0, although the number is not used
    /// \param second must be at least 1, although the number is not used
    virtual KelXmlLib::eStatus writeBinary(const unsigned char* data, int first, int second) = 0;
    /// Closes the file. Later write operations write nothing to the file, and make Qt log a warning. Calling
    /// `close` again is harmless.
    virtual KelXmlLib::eStatus close() = 0;
    /// Passes buffered text to the operating system. Disk errors are not reported.
    virtual KelXmlLib::eStatus flush() = 0;
};

/// Creates a filer for a file. Deletes the content of an existing file.
/// \param path the path of the file
/// \param encoding ignored: the file is always UTF-8
/// \param indentation ignored: if the file is indented, each level of elements is indented by four spaces
/// \param autoFormat whether to indent the file
/// \param secondFlag ignored
/// \param text1, text2 ignored; may be null
/// \return a filer, which the caller deletes through `IKelXmlFiler`; null if `path` is missing. If the file
///         cannot be opened, the function still returns a filer, which writes nothing
extern "C" KEL_EXPORT IKelXmlFiler* morvCreateXmlFiler(const wchar_t* path, KelXmlLib::eEncoding encoding,
                                                       int indentation, bool autoFormat, bool secondFlag,
                                                       const wchar_t* text1, const wchar_t* text2);
