/// \file
/// The XML filer: a forward-only writer of one XML file. The caller makes one with `morvCreateXmlFiler`,
/// calls its write operations in document order and deletes it.
///
/// Conventions. A status of 0 says that the arguments were accepted, not that they reached the disk: errors
/// of the file are never reported. Strings are read up to their first zero, and a unit that is no character
/// is written as U+FFFD. "Missing" means null or empty. A filer is used by one thread at a time.

#pragma once

#include "KelComWrapper/export.h"

namespace KelXmlLib
{

/// The encoding of a filer's file. What is asked for is not applied: every file is UTF-8.
enum eEncoding : int {
    eEncodingDefault = 0, ///< no wish
    eEncodingUtf16 = 1,   ///< UTF-16
    eEncodingUtf8 = 2,    ///< UTF-8, as `encoding()` always answers
};

/// What a write operation answers.
enum eStatus : int {
    eStatusAccepted = 0,        ///< the arguments were in order; what became of the writing does not show
    eStatusInvalidArgument = 2, ///< a required argument is missing or out of range; nothing was written
};

/// What `state()` answers; it never changes.
enum eState : int {
    eStateReady = 6, ///< also without a file, and after `close()`
};

} // namespace KelXmlLib

/// The writer's interface. Delete a filer through it.
class KEL_EXPORT IKelXmlFiler
{
public:
    /// Closes the file and frees the filer. Elements that are open stay unended.
    virtual ~IKelXmlFiler();

    /// \return `eStateReady`, whatever has become of the file
    virtual KelXmlLib::eState state() const = 0;
    /// \return `eEncodingUtf8`, whatever was asked for
    virtual KelXmlLib::eEncoding encoding() const = 0;
    /// \return 1 when the file is written indented, else 0
    virtual int indent() const = 0;
    /// Not carried out: `buffer` is not touched.
    virtual void newlineChars(wchar_t* buffer, int size) const = 0;

    /// Writes the XML declaration.
    virtual KelXmlLib::eStatus writeDocBegin() = 0;
    /// Ends every element that is open.
    virtual KelXmlLib::eStatus writeDocEnd() = 0;
    /// Begins an element.
    /// \param name must not be missing
    virtual KelXmlLib::eStatus writeElmBegin(const wchar_t* name) = 0;
    /// Writes a whole element, its end tag included.
    /// \param name, text must not be missing; for an empty element begin one and end it
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
    /// \param value may be null or empty, which gives an empty attribute
    virtual KelXmlLib::eStatus writeAttribute(const wchar_t* name, const wchar_t* value) = 0;
    /// Writes character data; `<`, `>`, `&` and the double quote are escaped.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeText(const wchar_t* text) = 0;
    /// The same as `writeText`: markup is escaped here as well.
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
    /// Writes a CDATA section, or two where the text holds the end of one.
    /// \param text must not be missing
    virtual KelXmlLib::eStatus writeCData(const wchar_t* text) = 0;
    /// Writes a comment.
    /// \param text must not be missing, nor hold two hyphens in a row or end in one,
    ///        which nobody could read back
    virtual KelXmlLib::eStatus writeComment(const wchar_t* text) = 0;
    /// Accepted, nothing is written. `data` is not read.
    /// \param data not null
    /// \param first at least 0
    /// \param second at least 1
    virtual KelXmlLib::eStatus writeBinary(const unsigned char* data, int first, int second) = 0;
    /// Closes the file; what is written later reaches no disk, and Qt warns of it. May be called again.
    virtual KelXmlLib::eStatus close() = 0;
    /// Hands what was written to the system. Whether the disk took it does not show.
    virtual KelXmlLib::eStatus flush() = 0;
};

/// Makes a filer for a file, which is emptied when it exists.
/// \param path of the file, copied
/// \param encoding, indentation ignored: a file is UTF-8, its levels are four spaces deep
/// \param autoFormat whether to indent
/// \param secondFlag, text1, text2 ignored; the texts may be null
/// \return a filer that the caller deletes through `IKelXmlFiler`; null for a missing `path`. Whether the
///         file could be opened does not show
extern "C" KEL_EXPORT IKelXmlFiler* morvCreateXmlFiler(const wchar_t* path, KelXmlLib::eEncoding encoding,
                                                       int indentation, bool autoFormat, bool secondFlag,
                                                       const wchar_t* text1, const wchar_t* text2);
