/// \file
/// Types for the texts and numbers that callers pass and read. KelXmlLib/kel.h includes this header.

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

/// An argument that is a name or a text, in UTF-8 or wide. A `TextView` only points to the caller's
/// characters, so do not keep a `TextView` after the call.
class TextView
{
public:
    /// Creates an empty text.
    TextView() = default;
    /// Refers to a UTF-8 text, up to the first null character. \param text must not be null
    TextView(const char* text) : TextView(std::string_view(text)) {}
    /// Refers to a UTF-8 text.
    TextView(std::string_view text) noexcept : m_text(text.data()), m_length(text.size()) {}
    /// Refers to a UTF-8 text.
    TextView(const std::string& text) noexcept : TextView(std::string_view(text)) {}
    /// Refers to a wide text, up to the first null character. \param text must not be null
    TextView(const wchar_t* text) : TextView(std::wstring_view(text)) {}
    /// Refers to a wide text.
    TextView(std::wstring_view text) noexcept : m_text(text.data()), m_length(text.size()), m_isWide(true) {}
    /// Refers to a wide text.
    TextView(const std::wstring& text) noexcept : TextView(std::wstring_view(text)) {}

    /// \return whether the text is wide. Read a wide text with `wide`, and any other text with `utf8`.
    bool isWide() const noexcept { return m_isWide; }
    /// Returns the text in UTF-8. Call `utf8` only if `isWide` returns false.
    std::string_view utf8() const noexcept { return {static_cast<const char*>(m_text), m_length}; }
    /// Returns the wide text. Call `wide` only if `isWide` returns true.
    std::wstring_view wide() const noexcept { return {static_cast<const wchar_t*>(m_text), m_length}; }

private:
    const void* m_text = "";
    std::size_t m_length = 0;
    bool m_isWide = false;
};

namespace detail
{

/// Whether a `T` can be passed as a text.
template <class T>
constexpr bool isText = std::is_convertible_v<const T&, TextView>;

/// Whether a `T` can be passed as a number. False for `bool`, which is written as `true` or `false`. False
/// for `char` and the wide character types, so that `'5'` is not written as 53. False for `long double`,
/// because `writeNumber` does not take a `long double`.
template <class T>
constexpr bool isNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && !std::is_same_v<T, char> &&
                          !std::is_same_v<T, wchar_t> && !std::is_same_v<T, char16_t> &&
                          !std::is_same_v<T, char32_t> && !std::is_same_v<T, long double>;

/// The type that the library uses to read or write a `Number`.
template <class Number>
using WidestOf =
    std::conditional_t<std::is_floating_point_v<Number>, Number,
                       std::conditional_t<std::is_signed_v<Number>, long long, unsigned long long>>;

/// Writes a number in the shortest form that reads back as the same number.
/// \param number the number to write
/// \param to receives the characters; must have room for 32 characters
/// \return how many characters were written
/// @{
KEL_EXPORT std::size_t writeNumber(long long number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(unsigned long long number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(float number, char* to) noexcept;
KEL_EXPORT std::size_t writeNumber(double number, char* to) noexcept;
/// @}

} // namespace detail

/// An argument that is a text, a number or a `bool`. A `Value` may point to the caller's characters, so do
/// not keep a `Value` after the call. Numbers are written the same way in every locale. A `double` or `float`
/// gets enough digits to read back as the same number. A `bool` is written as `true` or `false`.
class Value
{
public:
    /// Passes a text, UTF-8 or wide.
    template <class Text, std::enable_if_t<detail::isText<Text>, int> = 0>
    Value(const Text& text) : m_text(text)
    {}
    /// Passes a number.
    template <class Number, std::enable_if_t<detail::isNumber<Number>, int> = 0>
    Value(Number number) noexcept
        : m_text(std::string_view(
              m_digits, detail::writeNumber(static_cast<detail::WidestOf<Number>>(number), m_digits)))
    {}
    /// Passes a `bool`.
    template <class Bool, std::enable_if_t<std::is_same_v<Bool, bool>, char> = 0>
    Value(Bool truth) noexcept : m_text(truth ? std::string_view("true") : std::string_view("false"))
    {}
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    /// Returns the text, or the number or `bool` written as a text.
    const TextView& text() const noexcept { return m_text; }

private:
    char m_digits[32];
    TextView m_text;
};

namespace detail
{

/// The caller of a function that reads a value passes a default. If there is no value, the function returns
/// the default. The type of the default decides the type of the result: `std::string` for a UTF-8 text,
/// `std::wstring` for a wide text, and `Default` itself for a number or a `bool`.
template <class Default>
using TypeOf = std::conditional_t<
    std::is_convertible_v<const Default&, std::string_view>, std::string,
    std::conditional_t<std::is_convertible_v<const Default&, std::wstring_view>, std::wstring, Default>>;

/// A pointer to the variable that receives a parsed value. The type of the variable decides how the text is
/// parsed.
using Target =
    std::variant<std::string*, std::wstring*, bool*, long long*, unsigned long long*, float*, double*>;

/// Reads a value, or returns the default if `read` stores no value.
/// \param otherwise the default
/// \param read a function that receives a `Target`, and returns whether it has stored a value in the variable
///        of that `Target`
template <class Default, class Read>
TypeOf<Default> readOr(const Default& otherwise, Read read)
{
    using Type = TypeOf<Default>;
    if constexpr (isNumber<Type>) {
        WidestOf<Type> number{};
        const bool isValid = read(&number);
        if constexpr (!std::is_same_v<Type, WidestOf<Type>>)
            if (number < std::numeric_limits<Type>::min() || number > std::numeric_limits<Type>::max())
                return otherwise;
        return isValid ? static_cast<Type>(number) : otherwise;
    } else {
        static_assert(std::is_same_v<Type, bool> || isText<Type>,
                      "the default must be a text, a number or a bool");
        Type value{};
        return read(&value) ? value : Type(otherwise);
    }
}

} // namespace detail

} // namespace kel
