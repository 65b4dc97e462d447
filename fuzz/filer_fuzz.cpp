// The filer against Qt's writer used directly: the same calls give the same bytes, every status is the one
// that the arguments call for, and nobody complains on the console.

#include "KelXmlLib/filer.h"
#include "support.h"

#include <memory>
#include <optional>

using namespace kelfuzz;
using KelXmlLib::eStatus;

namespace
{

/// Which of its two texts a call cannot do without.
enum class Needs { Nothing, First, Both, MoreThanItGets };

struct Call
{
    Needs needs;
    eStatus (*ours)(IKelXmlFiler& filer, const wchar_t* one, const wchar_t* two);
    void (*qts)(QXmlStreamWriter& qt, const QString& one, const QString& two);
};

const auto kWritesNothing = [](auto&, auto&, auto&) {};
const unsigned char kByte = 0;

const Call kCalls[] = {
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeDocBegin(); },
     [](auto& qt, auto&, auto&) { qt.writeStartDocument(); }},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeDocEnd(); },
     [](auto& qt, auto&, auto&) { qt.writeEndDocument(); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeElmBegin(one); },
     [](auto& qt, auto& one, auto&) { qt.writeStartElement(one); }},
    {Needs::Both, [](auto& filer, auto one, auto two) { return filer.writeElmBegin(one, two); },
     [](auto& qt, auto& one, auto& two) { qt.writeTextElement(one, two); }},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeElmEnd(); },
     [](auto& qt, auto&, auto&) { qt.writeEndElement(); }},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeElmFullEnd(); },
     [](auto& qt, auto&, auto&) { qt.writeEndElement(); }},
    {Needs::First, [](auto& filer, auto one, auto two) { return filer.writeAttribute(one, two); },
     [](auto& qt, auto& one, auto& two) { qt.writeAttribute(one, two); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeText(one); },
     [](auto& qt, auto& one, auto&) { qt.writeCharacters(one); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeRawText(one); },
     [](auto& qt, auto& one, auto&) { qt.writeCharacters(one); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeCData(one); },
     [](auto& qt, auto& one, auto&) { qt.writeCDATA(one); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeComment(one); },
     [](auto& qt, auto& one, auto&) { qt.writeComment(one); }},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeAttrBegin(one); }, kWritesNothing},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeAttrEnd(); }, kWritesNothing},
    {Needs::First, [](auto& filer, auto one, auto) { return filer.writeValue(one); }, kWritesNothing},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeValue(1.5); }, kWritesNothing},
    {Needs::First, [](auto& filer, auto one, auto two) { return filer.writeDocType(one, two, two); },
     kWritesNothing},
    {Needs::Nothing, [](auto& filer, auto, auto) { return filer.writeBinary(&kByte, 0, 1); }, kWritesNothing},
    {Needs::MoreThanItGets, [](auto& filer, auto, auto) { return filer.writeBinary(&kByte, -1, 1); },
     kWritesNothing},
};

/// Null, empty, or some units, most of which a writer of XML must look at twice; some texts are longer than
/// a file's buffer.
std::optional<std::wstring> chooseText(Choices& choices)
{
    // The ending zero is one of them.
    static constexpr wchar_t kUnits[] =
        L"ab:1 <>&\"'\n\t\r]-?!\x01\x0b\x1f\x7f\u0085\u00a0\u00e4\u2028\u65e5\ufeff\ufffe\uffff"
        L"\xd800\xdbff\xdc00\xdfff\U0001f600\U0010ffff\x110000\x7fffffff\xffffffff";
    const unsigned length = choices.below(10);
    if (length == 9)
        return std::nullopt;
    std::wstring text;
    for (unsigned index = 0; index < length; ++index)
        text.append(length == 8 ? 1000 : 1, choices.of(kUnits));
    return text;
}

/// The filer and Qt's writer, which get the same calls.
class Writers
{
public:
    Writers(const wchar_t* path, bool opens, bool autoFormat) : m_isOpen(opens), m_qt(&m_expected)
    {
        m_qt.setAutoFormatting(autoFormat);
        m_filer.reset(morvCreateXmlFiler(path, KelXmlLib::eEncodingUtf16, 7, autoFormat, true, L"", nullptr));
        require(m_filer && m_filer->indent() == (autoFormat ? 1 : 0));
    }

    void make(const Call& call, Choices& choices)
    {
        const bool hasTexts = call.needs == Needs::First || call.needs == Needs::Both;
        const auto one = hasTexts ? chooseText(choices) : std::nullopt;
        const auto two = hasTexts ? chooseText(choices) : std::nullopt;
        const bool isAccepted = call.needs == Needs::Nothing ||
                                (call.needs == Needs::First && isPresent(one)) ||
                                (call.needs == Needs::Both && isPresent(one) && isPresent(two));
        require(call.ours(*m_filer, pointer(one), pointer(two)) ==
                (isAccepted ? KelXmlLib::eStatusAccepted : KelXmlLib::eStatusInvalidArgument));
        if (isAccepted && m_isOpen)
            call.qts(m_qt, QString::fromWCharArray(one ? one->c_str() : L""),
                     QString::fromWCharArray(two ? two->c_str() : L""));
    }

    void flush() { require(m_filer->flush() == KelXmlLib::eStatusAccepted); }
    void close()
    {
        require(m_filer->close() == KelXmlLib::eStatusAccepted);
        m_isOpen = false;
    }
    void end() { m_filer.reset(); }
    const QByteArray& expected() const { return m_expected; }

private:
    using Text = std::optional<std::wstring>;
    static const wchar_t* pointer(const Text& text) { return text ? text->c_str() : nullptr; }
    static bool isPresent(const Text& text) { return text && *text->c_str() != L'\0'; }

    bool m_isOpen;
    QByteArray m_expected;
    QXmlStreamWriter m_qt;
    std::unique_ptr<IKelXmlFiler> m_filer;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { std::abort(); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static MemoryFile file;
    Choices choices(data, size);
    const bool opens = !choices.oneIn(16);
    file.write(opens ? QByteArray("what an earlier filer wrote") : QByteArray());
    Writers writers(opens ? file.path().c_str() : L"/proc/self/none/x", opens, choices.oneIn(2));
    while (choices.left() > 0) {
        const unsigned which = choices.below(std::size(kCalls) + 2);
        if (which < std::size(kCalls)) {
            writers.make(kCalls[which], choices);
        } else if (which == std::size(kCalls)) {
            writers.flush();
            require(file.size() == writers.expected().size());
        } else {
            writers.close();
        }
    }
    writers.end();
    require(file.read() == writers.expected());
    return 0;
}
