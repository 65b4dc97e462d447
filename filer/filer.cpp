// Implements the XML filer with `QXmlStreamWriter`. A write operation returns "invalid argument" if a
// required argument is missing. Otherwise the write operation converts its text arguments, calls Qt's writer
// and returns "accepted". Some operations only check their arguments and write nothing. `text/strings` writes
// U+FFFD for each `wchar_t` that is not a character, such as half a surrogate pair.

#include "KelXmlLib/filer_wrapper.h"

#include "files/file.h"
#include "qt/codecs.h"
#include "text/strings.h"

#include <algorithm>
#include <new>

using kelxml::text::charactersFromWide;
using KelXmlLib::eStatus;

namespace
{

static_assert(sizeof(eStatus) == 4 && sizeof(KelXmlLib::eState) == 4 && sizeof(KelXmlLib::eEncoding) == 4,
              "hosts exchange statuses, states and encodings as 32-bit integers");
static_assert(sizeof(KelXmlFilerWrapper) == 4 * sizeof(void*),
              "hosts construct this class, so its size is fixed");

bool isMissing(const wchar_t* text)
{
    return !text || *text == L'\0';
}

/// Returns the status of an operation: "invalid argument" if a required argument is missing, else "accepted".
eStatus check(std::initializer_list<const wchar_t*> required)
{
    const bool isAnyMissing = std::any_of(required.begin(), required.end(), isMissing);
    return isAnyMissing ? KelXmlLib::eStatusInvalidArgument : KelXmlLib::eStatusAccepted;
}

/// Converts the text arguments of a write operation to `QString`, the only type of text that Qt's writer
/// accepts. Reuses the memory of two strings, because allocating new strings would take about a tenth of the
/// time of a write operation.
class Texts
{
public:
    const QString& first(const wchar_t* text) { return convert(text, m_first); }
    const QString& second(const wchar_t* text) { return convert(text, m_second); }

private:
    static const QString& convert(const wchar_t* text, QString& buffer)
    {
        constexpr int kMaxReused = 1024; // a string with a larger capacity is freed
        if (buffer.capacity() > kMaxReused)
            buffer = QString();
        return buffer = charactersFromWide(text, std::move(buffer));
    }

    QString m_first;
    QString m_second;
};

/// The filer's file. The file also owns the reused strings. The filer itself cannot own the strings, because
/// hosts rely on the size of the filer.
struct TextFile : kelxml::files::File
{
    using File::File;
    Texts texts;
};

} // namespace

IKelXmlFiler::~IKelXmlFiler() = default;

KelXmlFilerWrapper::KelXmlFilerWrapper()
{
    if (!kelxml::qt::hasCodecs())
        return;
    kelxml::files::ensureMemoryForQt();
    new (&m_writer) QXmlStreamWriter;
    m_hasWriter = true;
}

KelXmlFilerWrapper::KelXmlFilerWrapper(const wchar_t* path, KelXmlLib::eEncoding, int, bool autoFormat,
                                       bool secondFlag, const wchar_t*, const wchar_t*)
    : KelXmlFilerWrapper()
{
    if (isMissing(path))
        return;
    m_autoFormat = autoFormat;
    m_secondFlag = secondFlag;
    const std::optional<kelxml::files::Path> checked = kelxml::files::Path::from(path);
    if (!checked)
        return;
    auto file = std::make_unique<TextFile>(*checked);
    const bool isOpen = file->openForWriting();
    m_file = std::move(file);
    if (isOpen) {
        m_writer.setDevice(m_file.get());
        m_writer.setAutoFormatting(m_autoFormat);
    }
}

KelXmlFilerWrapper::~KelXmlFilerWrapper()
{
    if (m_file)
        m_file->close();
    m_file.reset();
    if (m_hasWriter)
        m_writer.~QXmlStreamWriter();
}

template <class Write>
eStatus KelXmlFilerWrapper::forward(std::initializer_list<const wchar_t*> required, Write write)
{
    const eStatus status = check(required);
    if (status == KelXmlLib::eStatusAccepted && kelxml::qt::hasCodecs()) {
        Texts temporary; // used if there is no file
        write(m_writer, m_file ? static_cast<TextFile&>(*m_file).texts : temporary);
    }
    return status;
}

KelXmlLib::eState KelXmlFilerWrapper::state() const
{
    return KelXmlLib::eStateReady;
}

KelXmlLib::eEncoding KelXmlFilerWrapper::encoding() const
{
    return KelXmlLib::eEncodingUtf8;
}

int KelXmlFilerWrapper::indent() const
{
    return m_autoFormat ? 1 : 0;
}

eStatus KelXmlFilerWrapper::writeDocBegin()
{
    return forward({}, [](QXmlStreamWriter& writer, Texts&) { writer.writeStartDocument(); });
}

eStatus KelXmlFilerWrapper::writeDocEnd()
{
    return forward({}, [](QXmlStreamWriter& writer, Texts&) { writer.writeEndDocument(); });
}

eStatus KelXmlFilerWrapper::writeElmBegin(const wchar_t* name)
{
    return forward(
        {name}, [=](QXmlStreamWriter& writer, Texts& texts) { writer.writeStartElement(texts.first(name)); });
}

eStatus KelXmlFilerWrapper::writeElmBegin(const wchar_t* name, const wchar_t* text)
{
    return forward({name, text}, [=](QXmlStreamWriter& writer, Texts& texts) {
        writer.writeTextElement(texts.first(name), texts.second(text));
    });
}

eStatus KelXmlFilerWrapper::writeElmEnd()
{
    return forward({}, [](QXmlStreamWriter& writer, Texts&) { writer.writeEndElement(); });
}

eStatus KelXmlFilerWrapper::writeElmFullEnd()
{
    return writeElmEnd();
}

eStatus KelXmlFilerWrapper::writeAttribute(const wchar_t* name, const wchar_t* value)
{
    return forward({name}, [=](QXmlStreamWriter& writer, Texts& texts) {
        writer.writeAttribute(texts.first(name), texts.second(value));
    });
}

eStatus KelXmlFilerWrapper::writeText(const wchar_t* text)
{
    return forward(
        {text}, [=](QXmlStreamWriter& writer, Texts& texts) { writer.writeCharacters(texts.first(text)); });
}

eStatus KelXmlFilerWrapper::writeRawText(const wchar_t* text)
{
    return writeText(text);
}

eStatus KelXmlFilerWrapper::writeCData(const wchar_t* text)
{
    return forward({text},
                   [=](QXmlStreamWriter& writer, Texts& texts) { writer.writeCDATA(texts.first(text)); });
}

eStatus KelXmlFilerWrapper::writeComment(const wchar_t* text)
{
    return forward({text},
                   [=](QXmlStreamWriter& writer, Texts& texts) { writer.writeComment(texts.first(text)); });
}

eStatus KelXmlFilerWrapper::close()
{
    if (m_file)
        m_file->close();
    return KelXmlLib::eStatusAccepted;
}

eStatus KelXmlFilerWrapper::flush()
{
    if (m_file)
        m_file->flush();
    return KelXmlLib::eStatusAccepted;
}

// Operations that write nothing. Operations with required arguments still check these arguments.

void KelXmlFilerWrapper::newlineChars(wchar_t*, int) const {}

eStatus KelXmlFilerWrapper::writeAttrBegin(const wchar_t* name)
{
    return check({name});
}

// Operations that have no required arguments and write nothing, one line each.
// clang-format off
eStatus KelXmlFilerWrapper::writeAttrEnd() { return KelXmlLib::eStatusAccepted; }
eStatus KelXmlFilerWrapper::writeValue(bool) { return KelXmlLib::eStatusAccepted; }
eStatus KelXmlFilerWrapper::writeValue(int) { return KelXmlLib::eStatusAccepted; }
eStatus KelXmlFilerWrapper::writeValue(long) { return KelXmlLib::eStatusAccepted; }
eStatus KelXmlFilerWrapper::writeValue(float) { return KelXmlLib::eStatusAccepted; }
eStatus KelXmlFilerWrapper::writeValue(double) { return KelXmlLib::eStatusAccepted; }
// clang-format on

eStatus KelXmlFilerWrapper::writeValue(const wchar_t* text)
{
    return check({text});
}

eStatus KelXmlFilerWrapper::writeDocType(const wchar_t* name, const wchar_t*, const wchar_t*)
{
    return check({name});
}

eStatus KelXmlFilerWrapper::writeBinary(const unsigned char* data, int first, int second)
{
    return data && first >= 0 && second > 0 ? KelXmlLib::eStatusAccepted : KelXmlLib::eStatusInvalidArgument;
}

IKelXmlFiler* morvCreateXmlFiler(const wchar_t* path, KelXmlLib::eEncoding encoding, int indentation,
                                 bool autoFormat, bool secondFlag, const wchar_t* text1, const wchar_t* text2)
{
    if (isMissing(path))
        return nullptr;
    return std::make_unique<KelXmlFilerWrapper>(path, encoding, indentation, autoFormat, secondFlag, text1,
                                                text2)
        .release();
}
