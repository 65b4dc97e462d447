/// \file
/// The XML filer: a forward-only writer of one XML file. Create one with `morvCreateXmlFiler`, call its write
/// operations in document order, and delete it.
///
/// Conventions. Status 0 means that the arguments were accepted, not that anything reached the disk: file
/// errors are never reported. Strings are read up to their first zero. A unit that is not a character is
/// written as U+FFFD. "Missing" means null or empty. Use a filer from one thread at a time.

#pragma once

#include "KelComWrapper/export.h"

namespace KelXmlLib
{

/// The encoding to ask for. The filer ignores it: every file is UTF-8.
enum eEncoding : int {
    eEncodingDefault = 0, ///< no preference
    eEncodingUtf16 = 1,   ///< UTF-16
    eEncodingUtf8 = 2,    ///< UTF-8; `encoding()` always returns this
};

/// The result of a write operation.
enum eStatus : int {
    eStatusAccepted = 0,        ///< the arguments were valid; says nothing about whether they were written
    eStatusInvalidArgument = 2, ///< a required argument is missing or out of range; nothing was written
};

/// The result of `state()`; always the same.
enum eState : int {
    eStateReady = 6, ///< also without a file, and after `close()`
};

} // namespace KelXmlLib

/// The writer's interface. Delete a filer through it.
class KEL_EXPORT IKelXmlFiler
{
public:
    /// Closes the file and frees the filer. Open elements are not ended.
    virtual ~IKelXmlFiler();

    /// \return `eStateReady`, always
    virtual KelXmlLib::eState state() const = 0;
    /// \return `eEncodingUtf8`, always
    virtual KelXmlLib::eEncoding encoding() const = 0;
    /// \return 1 for a filer made with `autoFormat`, else 0
    virtual int indent() const = 0;
    /// Not implemented: `buffer` is unchanged.
    virtual void newlineChars(wchar_t* buffer, int size) const = 0;

    /// Writes the XML declaration.
    virtual KelXmlLib::eStatus writeDocBegin() = 0;
    /// Ends all open elements.
    virtual KelXmlLib::eStatus writeDocEnd() = 0;
    /// Begins an element.
    /// \param name must not be missing
    virtual KelXmlLib::eStatus writeElmBegin(const wchar_t* name) = 0;
    /// Writes a whole element, including its end tag.
    /// \param name, text must not be missing; for an empty element, begin one and end it
    virtual KelXmlLib::eStatus writeElmBegin(const wchar_t* name, const wchar_t* text) = 0;
    /// Ends the innermost open element.
    virtual KelXmlLib::eStatus writeElmEnd() = 0;
    /// The same as `writeElmEnd`.
    virtual KelXmlLib::eStatus writeElmFullEnd() = 0;
    /// Accepted, nothing is written; use `writeAttribute`.
    /// \param name must not be missing
    virtual KelXmlLib::eStatus writeAttrBegin(const wchar_t* name) = 0;
    /// Accepted, nothing is written.
    virtual KelXmlLib::eStatus writeAttrEnd() = 0;
    /// Writes an attribute of the element just begun.
    /// \param name must not be missing
    /// \param value null or empty writes an empty attribute
    virtual KelXmlLib::eStatus writeAttribute(const wchar_t* name, const wchar_t* value) = 0;
    /// Writes character data; `<`, `>`, `&` and the double quote are escaped.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeText(const wchar_t* text) = 0;
    /// The same as `writeText`: escapes markup too.
    virtual KelXmlLib::eStatus writeRawText(const wchar_t* text) = 0;
    /// Accepted, nothing is written; use `writeText`.
    virtual KelXmlLib::eStatus writeValue(bool value) = 0;
    /// Accepted, nothing is written; use `writeText`.
    virtual KelXmlLib::eStatus writeValue(int value) = 0;
    /// Accepted, nothing is written; use `writeText`.
    virtual KelXmlLib::eStatus writeValue(long value) = 0;
    /// Accepted, nothing is written; use `writeText`.
    virtual KelXmlLib::eStatus writeValue(float value) = 0;
    /// Accepted, nothing is written; use `writeText`.
    virtual KelXmlLib::eStatus writeValue(double value) = 0;
    /// Accepted, nothing is written; use `writeText`.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeValue(const wchar_t* text) = 0;
    /// Accepted, nothing is written.
    /// \param name must not be missing
    /// \param publicId, systemId may be null or empty
    virtual KelXmlLib::eStatus writeDocType(const wchar_t* name, const wchar_t* publicId,
                                            const wchar_t* systemId) = 0;
    /// Writes a CDATA section, split in two wherever the text contains `]]>`.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeCData(const wchar_t* text) = 0;
    /// Writes a comment.
    /// \param text must not be missing. Hyphens are not checked: two in a row, or one at the end, make a file
    ///        that does not load
    virtual KelXmlLib::eStatus writeComment(const wchar_t* text) = 0;
    /// Accepted, nothing is written. `data` is not read.
    /// \param data not null
    /// \param first at least 0
    /// \param second at least 1
    virtual KelXmlLib::eStatus writeBinary(const unsigned char* data, int first, int second) = 0;
    /// Closes the file. Later writes reach no disk, and Qt logs a warning. Calling it again is harmless.
    virtual KelXmlLib::eStatus close() = 0;
    /// Passes buffered text to the system. Disk errors are not reported.
    virtual KelXmlLib::eStatus flush() = 0;
};

/// Creates a filer for a file. Truncates an existing file.
/// \param path the file, copied
/// \param encoding, indentation ignored: the file is UTF-8, indented by four spaces a level
/// \param autoFormat whether to indent
/// \param secondFlag, text1, text2 ignored; the texts may be null
/// \return a filer, which the caller deletes through `IKelXmlFiler`; null for a missing `path`. Failure to
///         open the file is not reported
extern "C" KEL_EXPORT IKelXmlFiler* morvCreateXmlFiler(const wchar_t* path, KelXmlLib::eEncoding encoding,
                                                       int indentation, bool autoFormat, bool secondFlag,
                                                       const wchar_t* text1, const wchar_t* text2);
