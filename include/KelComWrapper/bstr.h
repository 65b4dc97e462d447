/// \file
/// Functions for BSTRs, whose wide characters have 32 bits, and a class that owns a BSTR.

#pragma once

#include "export.h"
#include "types.h"

#include <utility>

extern "C" {
/// Copies a zero-terminated wide string into a new BSTR.
/// \return a BSTR that the caller frees with `SysFreeString`; null if `text` is null or memory runs out
KEL_EXPORT BSTR SysAllocString(const wchar_t* text);
/// Creates a BSTR of `length` characters. Copies the characters from `text`, or sets them to zero if `text`
/// is null.
/// \return a BSTR that the caller frees with `SysFreeString`; null if memory runs out
KEL_EXPORT BSTR SysAllocStringLen(const wchar_t* text, UINT length);
/// Frees a BSTR. Null is allowed.
KEL_EXPORT void SysFreeString(BSTR text);
/// \return the length in characters, which is stored in front of the text; 0 if `text` is null
KEL_EXPORT UINT SysStringLen(BSTR text);
/// Counts the characters of `text` before its terminating zero.
/// \return the count; 0 if `text` is null
KEL_EXPORT INT lstrlenW(const wchar_t* text);
}

namespace kel
{

/// Owns one BSTR and frees it. Can be moved but not copied.
class Bstr
{
public:
    Bstr() = default;
    /// Copies `text`. This object is empty if `text` is null or memory runs out.
    explicit Bstr(const wchar_t* text) : m_text(SysAllocString(text)) {}
    /// Takes over the BSTR of `other`. `other` becomes empty.
    Bstr(Bstr&& other) noexcept : m_text(other.detach()) {}
    /// Frees the held BSTR and takes over the BSTR of `other`. `other` becomes empty.
    Bstr& operator=(Bstr&& other) noexcept
    {
        reset(other.detach());
        return *this;
    }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(m_text); }

    /// Returns the BSTR, to read it or to pass it as an argument. This object still owns the BSTR.
    BSTR get() const noexcept { return m_text; }
    /// Returns the length of the BSTR in characters; 0 if this object is empty.
    UINT length() const noexcept { return SysStringLen(m_text); }
    /// Returns the text as a zero-terminated string. If this object is empty, the string is empty, not null.
    const wchar_t* c_str() const noexcept { return m_text ? m_text : L""; }
    /// \return whether this object holds a BSTR, even one of length 0
    explicit operator bool() const noexcept { return m_text != nullptr; }

    /// Frees the held BSTR and takes over `text`.
    void reset(BSTR text = nullptr) noexcept { SysFreeString(std::exchange(m_text, text)); }
    /// Gives the BSTR to the caller, who must free it. This object becomes empty.
    [[nodiscard]] BSTR detach() noexcept { return std::exchange(m_text, nullptr); }
    /// Frees the held BSTR and becomes empty. Returns the address of the pointer to the BSTR, to pass as an
    /// out-parameter. This object will own the BSTR that is written there.
    BSTR* put() noexcept
    {
        reset();
        return &m_text;
    }

private:
    BSTR m_text = nullptr;
};

static_assert(sizeof(Bstr) == sizeof(BSTR), "a structure keeps its layout if a Bstr replaces a BSTR");

} // namespace kel
