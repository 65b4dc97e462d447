/// \file
/// Turns an `HRESULT` into an exception of class `kel::Error`, for callers who prefer exceptions. The C++
/// layer throws the same class.

#pragma once

#include "export.h"
#include "types.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace kel
{

/// \return the meaning of `result` in a few words; "unknown result 0x..." if the table below does not list
///         `result`
inline std::string describe(HRESULT result)
{
    static constexpr struct
    {
        HRESULT result;
        const char* words;
    } kKnown[] = {
        {S_OK, "done"},
        {S_FALSE, "could not be done"},
        {E_NOTIMPL, "not implemented"},
        {E_NOINTERFACE, "no such interface"},
        {E_POINTER, "a pointer is missing"},
        {E_FAIL, "failed"},
        {E_OUTOFMEMORY, "out of memory"},
        {E_INVALIDARG, "an argument is not valid"},
        {DISP_E_MEMBERNOTFOUND, "no member of that kind"},
        {DISP_E_PARAMNOTFOUND, "no such parameter"},
        {DISP_E_TYPEMISMATCH, "a value has the wrong type"},
        {DISP_E_UNKNOWNNAME, "no member has that name"},
        {DISP_E_EXCEPTION, "the member failed"},
        {DISP_E_OVERFLOW, "a number is out of range"},
        {DISP_E_BADINDEX, "no such index"},
        {DISP_E_BADPARAMCOUNT, "wrong number of arguments"},
        {DISP_E_PARAMNOTOPTIONAL, "a required argument is missing"},
        {TYPE_E_INVDATAREAD, "the type library is damaged"},
        {TYPE_E_LIBNOTREGISTERED, "the type library is not registered"},
        {TYPE_E_ELEMENTNOTFOUND, "the type library does not describe that interface"},
        {TYPE_E_CANTLOADLIBRARY, "the type library cannot be loaded"},
    };
    for (const auto& known : kKnown)
        if (known.result == result)
            return known.words;
    char words[32];
    std::snprintf(words, sizeof words, "unknown result 0x%08X", static_cast<unsigned>(result));
    return words;
}

/// An exception that reports the failure of a call. `what()` returns one readable line.
class KEL_EXPORT Error : public std::runtime_error
{
public:
    /// \param code the `HRESULT` of the failed call
    explicit Error(HRESULT code) : std::runtime_error(describe(code)), m_code(code) {}
    /// \param code the `HRESULT` of the failed call
    /// \param action what the caller was doing, such as "asking for a name"
    Error(HRESULT code, const char* action)
        : std::runtime_error(std::string(action) + ": " + describe(code)), m_code(code)
    {}
    /// \param code the `HRESULT` of the failed call
    /// \param action what the caller was doing
    /// \param reason why the call failed; `what()` contains `reason` instead of the meaning of `code`
    Error(HRESULT code, const std::string& action, const std::string& reason)
        : std::runtime_error(action + ": " + reason), m_code(code)
    {}
    /// \return the `HRESULT` of the failed call
    HRESULT code() const noexcept { return m_code; }

private:
    HRESULT m_code;
};

/// How `check` treats `S_FALSE` and every other success code except `S_OK`.
enum class FalseIs { failure, success };

/// Throws if a call failed.
/// \param result what the call returned
/// \param meaning how to treat `S_FALSE`. Pass `FalseIs::success` for a method such as `nextNode`, which
///        returns `S_FALSE` at the end of a list
/// \return true for `S_OK`, false for any other success code
/// \throw Error for a failure code. If `meaning` is `FalseIs::failure`, also for every success code except
///        `S_OK`
inline bool check(HRESULT result, FalseIs meaning = FalseIs::failure)
{
    if (FAILED(result) || (result != S_OK && meaning == FalseIs::failure))
        throw Error(result);
    return result == S_OK;
}

/// Throws if a call failed. The error names the action that failed.
/// \param result what the call returned
/// \param action what the caller was doing, such as "asking for a name"
/// \param meaning how to treat `S_FALSE`. Pass `FalseIs::success` for a method such as `nextNode`, which
///        returns `S_FALSE` at the end of a list
/// \return true for `S_OK`, false for any other success code
/// \throw Error for a failure code. If `meaning` is `FalseIs::failure`, also for every success code except
///        `S_OK`
inline bool check(HRESULT result, const char* action, FalseIs meaning = FalseIs::failure)
{
    if (FAILED(result) || (result != S_OK && meaning == FalseIs::failure))
        throw Error(result, action);
    return result == S_OK;
}

} // namespace kel
