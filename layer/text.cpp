// Converts texts with Qt, and refuses texts in which Qt would silently replace or drop characters. Converts
// numbers with `std::from_chars` and `std::to_chars`, because these functions do not depend on the locale.

#include "layer/text.h"

#include "KelComWrapper/error.h"
#include "text/strings.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <new>
#include <utility>

namespace kel::detail
{

namespace
{

constexpr const char* kInvalid = "invalid text";

/// Converts a length to `int`, the type that Qt uses for lengths. \throw std::bad_alloc if a `QString` cannot
/// be that long
int lengthForQt(std::size_t length)
{
    if (length > std::numeric_limits<int>::max() / sizeof(QChar) - 16)
        throw std::bad_alloc();
    return static_cast<int>(length);
}

/// Converts UTF-8. Qt replaces invalid bytes with U+FFFD, but a valid text may also contain U+FFFD. If the
/// converted text contains U+FFFD, this function encodes the text again and compares the bytes with `utf8`.
/// Qt also drops a leading byte order mark, so this function puts the mark back.
Converted fromUtf8(std::string_view utf8)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const int length = lengthForQt(utf8.size());
    QString text = QString::fromUtf8(utf8.data(), length);
    if (utf8.substr(0, kByteOrderMark.size()) == kByteOrderMark)
        text.prepend(QChar::ByteOrderMark);
    const auto isUnchanged = [&] {
        const QByteArray encoded = text.toUtf8();
        return utf8 == std::string_view(encoded.constData(), static_cast<std::size_t>(encoded.size()));
    };
    if (text.contains(QChar::ReplacementCharacter) && !isUnchanged())
        return {{}, "it is not valid UTF-8"};
    return {text};
}

Converted fromWide(std::wstring_view wide)
{
    QString text;
    text.reserve(lengthForQt(wide.size()));
    for (const wchar_t unit : wide) {
        const auto character = static_cast<char32_t>(unit);
        if (!kelxml::text::isCharacter(character))
            return {{}, "it contains an invalid wide character"};
        if (QChar::requiresSurrogates(character))
            text.append(QChar(QChar::highSurrogate(character)));
        text.append(QChar(QChar::requiresSurrogates(character) ? QChar::lowSurrogate(character)
                                                               : static_cast<char16_t>(character)));
    }
    return {text};
}

constexpr const char* kZero = "it contains a null character";

/// Refuses characters that XML does not allow. Qt would drop such a character, or write a file that other
/// parsers refuse.
QString requireAllowed(QString&& text)
{
    const auto isForbidden = [](QChar c) {
        return (c < u' ' && c != u'\t' && c != u'\n' && c != u'\r') || c >= QChar(0xFFFE);
    };
    const QChar* const found = std::find_if(text.cbegin(), text.cend(), isForbidden);
    if (found != text.cend())
        throw Error(E_INVALIDARG, kInvalid,
                    "XML does not allow the character U+" +
                        QString::asprintf("%04X", found->unicode()).toStdString());
    return std::move(text);
}

/// Says where a character may be in a name.
enum class InName { no, notFirst, anywhere };

/// Returns where `c` may be in a name that Qt's parser reads.
InName inName(QChar c)
{
    switch (c.category()) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Other:
    case QChar::Number_Letter:
        return InName::anywhere;
    case QChar::Letter_Modifier:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Number_DecimalDigit:
        return InName::notFirst;
    default:
        return c == u'_' || c == u':'   ? InName::anywhere
               : c == u'-' || c == u'.' ? InName::notFirst
                                        : InName::no;
    }
}

bool isName(const QString& text)
{
    return !text.isEmpty() && inName(text[0]) == InName::anywhere &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return inName(c) != InName::no; });
}

/// Removes the white space around a text. Replaces each character outside ASCII with `?`, so that a text with
/// such a character is not read as a number or a `bool`.
std::string asciiOf(const QString& text)
{
    const auto isSpace = [](QChar c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; };
    const QChar* first = std::find_if_not(text.begin(), text.end(), isSpace);
    const QChar* last = text.end();
    while (last != first && isSpace(last[-1]))
        --last;
    std::string ascii(static_cast<std::size_t>(last - first), '\0');
    std::transform(first, last, ascii.begin(),
                   [](QChar c) { return c.unicode() < 0x80 ? c.toLatin1() : '?'; });
    return ascii;
}

bool read(const QString& text, std::string& value)
{
    const QByteArray utf8 = text.toUtf8();
    value.assign(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    return true;
}

bool read(const QString& text, std::wstring& value)
{
    value = text.toStdWString();
    return true;
}

bool read(const QString& text, bool& value)
{
    const std::string word = asciiOf(text);
    const bool isTrue = word == "true" || word == "1";
    const bool isValid = isTrue || word == "false" || word == "0";
    if (isValid)
        value = isTrue;
    return isValid;
}

template <class Number>
bool read(const QString& text, Number& value)
{
    const std::string digits = asciiOf(text);
    const char* const end = digits.data() + digits.size();
    const bool hasPlus = digits.size() > 1 && digits[0] == '+' && digits[1] != '-';
    Number number{};
    const auto [stop, error] = std::from_chars(digits.data() + hasPlus, end, number); // accepts no plus sign
    const bool isValid = error == std::errc() && stop == end;
    if (isValid)
        value = number;
    return isValid;
}

template <class Number>
std::size_t write(Number number, char* to) noexcept
{
    return static_cast<std::size_t>(std::to_chars(to, to + 32, number).ptr - to);
}

} // namespace

Converted convert(TextView text)
{
    Converted converted = text.isWide() ? fromWide(text.wide()) : fromUtf8(text.utf8());
    if (converted.text.contains(QChar(0)))
        return {{}, kZero};
    return converted;
}

QString toText(TextView text)
{
    Converted converted = convert(text);
    if (converted.fault)
        throw Error(E_INVALIDARG, kInvalid, converted.fault);
    return std::move(converted.text);
}

QString toContent(TextView text)
{
    return requireAllowed(toText(text));
}

QString toCharacters(TextView text)
{
    if (!text.isWide())
        return toContent(text);
    const std::wstring wide(text.wide());
    if (wide.find(L'\0') != std::wstring::npos)
        throw Error(E_INVALIDARG, kInvalid, kZero);
    QString converted = kelxml::text::charactersFromWide(wide.c_str());
    if (wide[0] == QChar::ByteOrderMark) // the conversion drops a leading mark
        converted.prepend(QChar::ByteOrderMark);
    return requireAllowed(std::move(converted));
}

QString toName(TextView name)
{
    QString converted = toText(name);
    if (!isName(converted))
        throw Error(E_INVALIDARG, "invalid name",
                    '\'' + inOneLine(converted.toStdString()) + "' is not a name");
    return converted;
}

std::string inOneLine(const std::string& text)
{
    std::string line;
    for (const char c : text)
        if (const auto unit = static_cast<unsigned char>(c); unit < ' ')
            line += QString::asprintf("\\u%04X", unit).toStdString();
        else
            line += c;
    return line;
}

bool assign(const QString& text, Target target)
{
    return std::visit([&](auto* value) { return read(text, *value); }, target);
}

std::size_t writeNumber(long long number, char* to) noexcept
{
    return write(number, to);
}

std::size_t writeNumber(unsigned long long number, char* to) noexcept
{
    return write(number, to);
}

std::size_t writeNumber(float number, char* to) noexcept
{
    return write(number, to);
}

std::size_t writeNumber(double number, char* to) noexcept
{
    return write(number, to);
}

} // namespace kel::detail
