/// \file
/// The class that `morvCreateXmlFiler` creates. Include this header only to construct the class yourself. It
/// needs Qt's headers.

#pragma once

#include "KelXmlLib/filer.h"

#include <initializer_list>
#include <memory>

#include <QtCore/QXmlStreamWriter>

class QFile;

/// The only implementation of `IKelXmlFiler`, which says what each method does.
class KEL_EXPORT KelXmlFilerWrapper final : public IKelXmlFiler
{
public:
    /// Opens a file for writing, and truncates an existing file. If the file cannot be opened, this is not
    /// reported: the filer accepts every write operation but writes nothing. The filer does not open a path
    /// with characters that file names cannot have. Late in the process's exit, once Qt's codecs are
    /// destroyed, it opens no file at all.
    /// \param path the path of the file, which is copied. If it is null or empty, the filer has no file, and
    ///        `indent()` returns 0
    /// \param encoding not used: the file is always UTF-8
    /// \param indentation not used: each level is indented by four spaces
    /// \param autoFormat whether to begin each start tag on a new line, and to indent it
    /// \param secondFlag stored, but not used
    /// \param text1, text2 not used; may be null
    KelXmlFilerWrapper(const wchar_t* path, KelXmlLib::eEncoding encoding, int indentation, bool autoFormat,
                       bool secondFlag, const wchar_t* text1, const wchar_t* text2);
    KelXmlFilerWrapper(const KelXmlFilerWrapper&) = delete;
    KelXmlFilerWrapper& operator=(const KelXmlFilerWrapper&) = delete;
    /// Closes the file. Open elements are not ended.
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
    /// Creates the writer, unless Qt's codecs are destroyed: the writer's constructor needs them.
    [[gnu::visibility("hidden")]] KelXmlFilerWrapper();
    /// Calls `write` with the writer if no required argument is missing.
    template <class Write>
    KelXmlLib::eStatus forward(std::initializer_list<const wchar_t*> required, Write write);

    std::unique_ptr<QFile> m_file;
    union {
        QXmlStreamWriter m_writer; ///< constructed only if `m_hasWriter`
    };
    bool m_autoFormat = false;
    bool m_secondFlag = false;
    bool m_hasWriter = false;
};
