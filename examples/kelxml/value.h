// An owner for one VARIANT.

#pragma once

#include "KelComWrapper/com_ptr.h"
#include "KelComWrapper/dispatch.h"

#include <string>
#include <string_view>
#include <utility>

namespace host
{

/// Holds a value together with the BSTR or the object reference that it may carry. Moves, does not copy.
class Value
{
public:
    Value() = default;
    explicit Value(std::wstring_view text);
    /// Without this one, a literal would be taken for a truth value.
    explicit Value(const wchar_t* text) : Value(std::wstring_view(text)) {}
    explicit Value(std::int32_t number);
    explicit Value(std::int64_t number);
    explicit Value(double number);
    explicit Value(bool truth);
    Value(Value&& other) noexcept : m_variant(std::exchange(other.m_variant, VARIANT{})) {}
    Value& operator=(Value&& other) noexcept
    {
        std::swap(m_variant, other.m_variant);
        return *this;
    }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { clear(); }

    /// Lends the value, to read or to pass as an argument; what it carries stays owned here.
    const VARIANT& get() const noexcept { return m_variant; }
    /// Clears the value and lends the empty place as an out-parameter.
    VARIANT* put() noexcept
    {
        clear();
        return &m_variant;
    }
    /// The string that the value carries; empty when it carries none.
    std::wstring text() const;
    /// The object that the value carries, with a reference of its own; null when it carries none.
    kel::ComPtr<IDispatch> object() const;

private:
    void clear() noexcept;

    VARIANT m_variant{};
};

} // namespace host
