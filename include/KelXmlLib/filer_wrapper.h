/// \file
/// The class behind `morvCreateXmlFiler`, for callers who construct it themselves. Needs the headers of Qt.

#pragma once

#include "KelXmlLib/filer.h"

#include <initializer_list>
#include <memory>

#include <QtCore/QXmlStreamWriter>

class QFile;

/// The one implementation. See `IKelXmlFiler` for what each method does.
class KEL_EXPORT KelXmlFilerWrapper final : public IKelXmlFiler
{
public:
    /// Opens `path` for writing, an existing file being emptied; failure to open is not reported, and every
    /// write is then accepted and reaches no disk. A path that the encoding of file names cannot hold is not
    /// opened, nor is any once Qt's codecs are gone, in destructors late in the end of the process.
    /// \param path where to write, copied; null or empty: the filer has no file
    /// \param encoding, indentation not used: every file is UTF-8, its levels indented by four or not at all
    /// \param autoFormat whether start tags stand on lines of their own, indented by four spaces a level
    /// \param secondFlag recorded, used by nothing
    /// \param text1, text2 not used; may be null
    KelXmlFilerWrapper(const wchar_t* path, KelXmlLib::eEncoding encoding, int indentation, bool autoFormat,
                       bool secondFlag, const wchar_t* text1, const wchar_t* text2);
    KelXmlFilerWrapper(const KelXmlFilerWrapper&) = delete;
    KelXmlFilerWrapper& operator=(const KelXmlFilerWrapper&) = delete;
    /// Closes the file. Elements that are open stay unended.
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
    /// Makes the writer, unless Qt's codecs are gone: its constructor needs them.
    [[gnu::visibility("hidden")]] KelXmlFilerWrapper();
    /// Calls `write` with the writer when the required arguments are present.
    template <class Write>
    KelXmlLib::eStatus forward(std::initializer_list<const wchar_t*> required, Write write);

    std::unique_ptr<QFile> m_file;
    union {
        QXmlStreamWriter m_writer; ///< there if `m_hasWriter`
    };
    bool m_autoFormat = false;
    bool m_secondFlag = false;
    bool m_hasWriter = false;
};
