// A recursive-descent parser for expressions.

#include "expression.h"

#include "text.h"

#include <charconv>
#include <limits>

namespace tool
{
namespace
{

/// Maximum nesting of argument lists. Without a limit, the recursion of the parser could exhaust the stack.
constexpr int kMaxNesting = 100;

bool isDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool isNameStart(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || c == L'_';
}

class Parser
{
public:
    explicit Parser(std::wstring_view text) : m_text(text) {}

    Expression parse()
    {
        Expression expression;
        expression.path = path();
        if (accept(L'='))
            expression.assigned.push_back(argument());
        skipSpace();
        if (m_position != m_text.size())
            fail("end of the expression");
        return expression;
    }

private:
    [[noreturn]] void fail(const char* expected) const
    {
        throw UsageError("the expression, character " + std::to_string(m_position + 1) + ": expected " +
                         expected);
    }

    wchar_t peek() const { return m_position < m_text.size() ? m_text[m_position] : L'\0'; }

    void skipSpace()
    {
        while (peek() == L' ' || peek() == L'\t' || peek() == L'\n')
            ++m_position;
    }

    bool accept(wchar_t sign)
    {
        skipSpace();
        if (m_position == m_text.size() || m_text[m_position] != sign)
            return false;
        ++m_position;
        return true;
    }

    std::wstring name()
    {
        skipSpace();
        const std::size_t start = m_position;
        if (!isNameStart(peek()))
            fail("the name of a member");
        while (isNameStart(peek()) || isDigit(peek()))
            ++m_position;
        return std::wstring(m_text.substr(start, m_position - start));
    }

    Path path()
    {
        skipSpace();
        const std::size_t start = m_position;
        Path steps;
        do {
            Step step;
            step.name = name();
            std::size_t end = m_position;
            if (accept(L'(')) {
                step.arguments = argumentList();
                end = m_position;
            }
            step.source = m_text.substr(start, end - start);
            steps.push_back(std::move(step));
        } while (accept(L'.'));
        return steps;
    }

    /// Parses a list of arguments and its closing parenthesis. The opening parenthesis has already been
    /// parsed.
    std::vector<Argument> argumentList()
    {
        std::vector<Argument> arguments;
        if (accept(L')'))
            return arguments;
        if (++m_nesting > kMaxNesting)
            fail("fewer nested parentheses");
        do
            arguments.push_back(argument());
        while (accept(L','));
        if (!accept(L')'))
            fail("',' or ')'");
        --m_nesting;
        return arguments;
    }

    Argument argument()
    {
        skipSpace();
        if (peek() == L'"')
            return {string()};
        if (isDigit(peek()) || peek() == L'-' || peek() == L'+')
            return number();
        if (!isNameStart(peek()))
            fail("a string, a number, true, false, null or a member");
        Path steps = path();
        const std::wstring_view word = steps.back().source;
        if (word == L"true" || word == L"false")
            return {word == L"true"};
        if (word == L"null")
            return {nullptr};
        return {std::move(steps)};
    }

    std::wstring string()
    {
        std::wstring text;
        for (++m_position; peek() != L'"'; ++m_position) {
            if (m_position == m_text.size())
                fail("the closing quote");
            if (peek() == L'\\') {
                ++m_position;
                text += escaped();
            } else
                text += peek();
        }
        ++m_position;
        return text;
    }

    /// Returns the character that an escape sequence means. `m_position` must be just after the backslash,
    /// and does not change.
    wchar_t escaped()
    {
        switch (peek()) {
        case L'n':
            return L'\n';
        case L't':
            return L'\t';
        case L'r':
            return L'\r';
        case L'"':
        case L'\\':
            return peek();
        default:
            fail(R"(one of \" \\ \n \t \r)");
        }
    }

    /// Parses a number. Returns a value of the first type in this list that can represent the number: 32-bit
    /// integer, 64-bit integer, double.
    Argument number()
    {
        const std::size_t start = m_position;
        while (isDigit(peek()) || peek() == L'.' || peek() == L'e' || peek() == L'E' || peek() == L'-' ||
               peek() == L'+')
            ++m_position;
        std::string digits = toUtf8(m_text.substr(start, m_position - start));
        if (digits.front() == '+')
            digits.erase(0, 1);
        const char* const last = digits.data() + digits.size();
        std::int64_t whole = 0;
        if (const auto read = std::from_chars(digits.data(), last, whole);
            read.ec == std::errc() && read.ptr == last) {
            using Small = std::numeric_limits<std::int32_t>;
            if (whole >= Small::min() && whole <= Small::max())
                return {static_cast<std::int32_t>(whole)};
            return {whole};
        }
        double decimal = 0;
        if (const auto read = std::from_chars(digits.data(), last, decimal);
            read.ec != std::errc() || read.ptr != last) {
            m_position = start;
            fail("a number");
        }
        return {decimal};
    }

    const std::wstring_view m_text;
    std::size_t m_position = 0;
    int m_nesting = 0;
};

} // namespace

Expression parseExpression(std::wstring_view text)
{
    return Parser(text).parse();
}

} // namespace tool
