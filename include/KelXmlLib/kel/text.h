/// \file
/// Converts texts and numbers that are passed to the layer or returned. Included by KelXmlLib/kel.h.

#pragma once

#include "KelComWrapper/export.h"

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace kel
{

/// A name or a text as an argument: UTF-8 or wide, borrowed for the call.
class TextView
{
public:
    /// An empty text.
    TextView() = default;
    /// UTF-8 up to the first zero. \param text not null
    TextView(const char* text) : TextView(std::string_view(text)) {}
    /// UTF-8.
    TextView(std::string_view text) noexcept : m_text(text.data()), m_length(text.size()) {}
    /// UTF-8.
    TextView(const std::string& text) noexcept : TextView(std::string_view(text)) {}
    /// Wide, up to the first zero. \param text not null
    TextView(const wchar_t* text) : TextView(std::wstring_view(text)) {}
    /// Wide.
    TextView(std::wstring_view text) noexcept : m_text(text.data()), m_length(text.size()), m_isWide(true) {}
    /// Wide.
    TextView(const std::wstring& text) noexcept : TextView(std::wstring_view(text)) {}

    /// \return whether it is wide; then it is read with `wide`, else with `utf8`
    bool isWide() const noexcept { return m_isWide; }
    /// \return the text if it is not wide
    std::string_view utf8() const noexcept { return {static_cast<const char*>(m_text), m_length}; }
    /// \return the text if it is wide
    std::wstring_view wide() const noexcept { return {static_cast<const wchar_t*>(m_text), m_length}; }

private:
    const void* m_text = "";
    std::size_t m_length = 0;
    bool m_isWide = false;
};

namespace detail
{

/// What a text argument can be.
template <class T>
constexpr bool isText = std::is_convertible_v<const T&, TextView>;

/// Characters count as numbers in C++, but `'5'` would be written as 53.
template <class T>
constexpr bool isNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char> &&
                          !std::is_same_v<T, wchar_t> && !std::is_same_v<T, char16_t> &&
                          !std::is_same_v<T, char32_t> && !std::is_same_v<T, long double>;

/// The type used to read and write a number.
template <class Number>
using WidestOf =
    std::conditional_t<std::is_floating_point_v<Number>, Number,
                       std::conditional_t<std::is_signed_v<Number>, long long, unsigned long long>>;

/// Writes a number in the shortest form that reads back as the same number.
/// \param number to be written
/// \param to has room for 32 characters
/// \return how many were written
/// @{
KEL_EXPORT std::size_t writeNumber(long long number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(unsigned long long number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(float number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(double number, char* to) noexcept;
/// @}

} // namespace detail

/// A text, a number or a truth value as an argument, borrowed for the call. Numbers are written the same way
/// in every locale, and `double` and `float` so that they read back as the same number; `bool` is written
/// `true` or `false`.
class Value
{
public:
    /// A text, UTF-8 or wide.
    template <class Text, std::enable_if_t<detail::isText<Text>, int> = 0>
    Value(const Text& text) : m_text(text)
    {}
    /// A number.
    template <class Number, std::enable_if_t<detail::isNumber<Number>, int> = 0>
    Value(Number number) noexcept
        : m_text(std::string_view(
              m_digits, detail::writeNumber(static_cast<detail::WidestOf<Number>>(number), m_digits)))
    {}
    /// `true` or `false`.
    template <class Bool, std::enable_if_t<std::is_same_v<Bool, bool>, char> = 0>
    Value(Bool truth) noexcept : m_text(truth ? std::string_view("true") : std::string_view("false"))
    {}
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    /// The text that is written.
    const TextView& text() const noexcept { return m_text; }

private:
    char m_digits[32];
    TextView m_text;
};

namespace detail
{

/// The type of the result for a default: a string for every kind of text, otherwise the default's own type.
template <class Default>
using TypeOf = std::conditional_t<
    std::is_convertible_v<const Default&, std::string_view>, std::string,
    std::conditional_t<std::is_convertible_v<const Default&, std::wstring_view>, std::wstring, Default>>;

/// Receives a value. Its type decides which texts are valid.
using Target =
    std::variant<std::string*, std::wstring*, bool*, long long*, unsigned long long*, float*, double*>;

/// \param otherwise the default
/// \param read receives the target; returns whether there was a value of its type
template <class Default, class Read>
TypeOf<Default> readOr(const Default& otherwise, Read read)
{
    using Type = TypeOf<Default>;
    if constexpr (isNumber<Type>) {
        WidestOf<Type> number{};
        const bool isThere = read(&number);
        if constexpr (!std::is_same_v<Type, WidestOf<Type>>)
            if (number < std::numeric_limits<Type>::min() || number > std::numeric_limits<Type>::max())
                return otherwise;
        return isThere ? static_cast<Type>(number) : otherwise;
    } else {
        static_assert(std::is_same_v<Type, bool> || isText<Type>, "a text, a number or a truth value");
        Type value{};
        return read(&value) ? value : Type(otherwise);
    }
}

} // namespace detail

} // namespace kel
