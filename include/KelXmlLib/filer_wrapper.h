/// \file
/// The class that `morvCreateXmlFiler` creates. This header includes a Qt header, so include it only if you
/// construct the class yourself.

#pragma once

#include "KelXmlLib/filer.h"

#include <initializer_list>
#include <memory>

#include <QtCore/QXmlStreamWriter>

class QFile;

/// The only implementation of `IKelXmlFiler`. The comments in `IKelXmlFiler` say what each method does.
class KEL_EXPORT KelXmlFilerWrapper final : public IKelXmlFiler
{
public:
    /// Opens a file for writing, and deletes the content of an existing file. If the file cannot be opened,
    /// the constructor does not report the failure. A filer without an open file writes nothing, but returns
    /// the same statuses as a filer with an open file. A file is never opened if its path contains characters
    /// that file names cannot have. No file at all is opened once Qt's codecs are destroyed, late in the exit
    /// of the process.
    /// \param path the path of the file; the constructor copies the string. If `path` is null or empty, the
    ///        filer has no file, and `indent()` returns 0
    /// \param encoding not used: the file is always UTF-8
    /// \param indentation not used: if start tags are indented, each level of elements is indented by four
    ///        spaces
    /// \param autoFormat whether each start tag begins on a new line and is indented
    /// \param secondFlag stored, but not used
    /// \param text1, text2 not used; may be null
    KelXmlFilerWrapper(const wchar_t* path, KelXmlLib::eEncoding encoding, int indentation, bool autoFormat,
                       bool secondFlag, const wchar_t* text1, const wchar_t* text2);
    KelXmlFilerWrapper(const KelXmlFilerWrapper&) = delete;
    KelXmlFilerWrapper& operator=(const KelXmlFilerWrapper&) = delete;
    /// Closes the file. Writes no end tags for elements that are still open.
    ~KelXmlFilerWrapper() override;

    KelXmlLib::eState state() const override;
    KelXmlLib::eEncoding encoding() const override;
    int indent() const override;
    void newlineChars(wchar_t* buffer, int size) const override;
    KelXmlLib::eStatus writeDocBegin() override;
    KelXmlLib::eStatus writeDocEnd() override;
    KelXmlLib::eStatus writeElmBegin(const wchar_t* name) override;
    KelXmlLib::eStatus writeElmBegin(const wchar_t* name, const wchar_t* text) override;
    KelXmlLib::eStatus writeElmEnd() override;
    KelXmlLib::eStatus writeElmFullEnd() override;
    KelXmlLib::eStatus writeAttrBegin(const wchar_t* name) override;
    KelXmlLib::eStatus writeAttrEnd() override;
    KelXmlLib::eStatus writeAttribute(const wchar_t* name, const wchar_t* value) override;
    KelXmlLib::eStatus writeText(const wchar_t* text) override;
    KelXmlLib::eStatus writeRawText(const wchar_t* text) override;
    KelXmlLib::eStatus writeValue(bool value) override;
    KelXmlLib::eStatus writeValue(int value) override;
    KelXmlLib::eStatus writeValue(long value) override;
    KelXmlLib::eStatus writeValue(float value) override;
    KelXmlLib::eStatus writeValue(double value) override;
    KelXmlLib::eStatus writeValue(const wchar_t* text) override;
    KelXmlLib::eStatus writeDocType(const wchar_t* name, const wchar_t* publicId,
                                    const wchar_t* systemId) override;
    KelXmlLib::eStatus writeCData(const wchar_t* text) override;
    KelXmlLib::eStatus writeComment(const wchar_t* text) override;
    KelXmlLib::eStatus writeBinary(const unsigned char* data, int first, int second) override;
    KelXmlLib::eStatus close() override;
    KelXmlLib::eStatus flush() override;

private:
    /// Constructs `m_writer`, unless Qt's codecs are destroyed. The constructor of `m_writer` needs the
    /// codecs.
    [[gnu::visibility("hidden")]] KelXmlFilerWrapper();
    /// Calls `write` with `m_writer`, unless a string in `required` is null or empty, or Qt's codecs are
    /// destroyed.
    template <class Write>
    KelXmlLib::eStatus forward(std::initializer_list<const wchar_t*> required, Write write);

    std::unique_ptr<QFile> m_file;
    union {
        QXmlStreamWriter m_writer; ///< constructed only if `m_hasWriter` is true
    };
    bool m_autoFormat = false;
    bool m_secondFlag = false;
    bool m_hasWriter = false;
};
