// Converts words of test tables to VARIANTs, and converts VARIANTs and other results to words.

#pragma once

#include "KelComWrapper/variant_owner.h"
#include "support/patterns.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <map>
#include <string>
#include <vector>

namespace keltest
{

constexpr std::array kTypes{"empty", "null",     "i2",    "i4",   "r4",      "r8",      "cy",      "date",
                            "bstr",  "dispatch", "error", "bool", "variant", "unknown", "decimal", "15",
                            "i1",    "ui1",      "ui2",   "ui4",  "i8",      "ui8",     "int",     "uint"};

/// The arguments of a call, in the order of `rgvarg`, and the identifiers of the named arguments.
struct Arguments
{
    DISPPARAMS parameters() { return {values.data(), names.data(), UINT(values.size()), UINT(names.size())}; }
    std::vector<VARIANT> values{};
    std::vector<DISPID> names{};
};

/// Makes VARIANTs from words. Owns what the VARIANTs point to, except objects. The words are:
///
/// - `i4:-7`: a type and a value
/// - `0x2003:0`: a type by its number, and a value
/// - `r8:0x7ff0000000000000`: a floating-point number by its bits
/// - `bstr:a_{b|3}`: the text "a bbb" (see `expand`)
/// - `bstr`: a null text
/// - `unknown:name`: the object with this name in `objects`
/// - `&ui1:3`: a reference to a value
/// - `*i4:7`: a reference to a VARIANT
struct Variants
{
    VARIANT& of(const std::string& word)
    {
        VARIANT& value = values.emplace_back();
        if (word[0] == '&' || word[0] == '*') {
            VARIANT& target = of(word.substr(1));
            value.vt = static_cast<VARTYPE>(VT_BYREF | (word[0] == '*' ? VARTYPE{VT_VARIANT} : target.vt));
            value.byref = word[0] == '*' ? &target : static_cast<void*>(&target.llVal);
            return value;
        }
        const std::size_t colon = std::min(word.find(':'), word.size());
        const std::string type = word.substr(0, colon);
        std::string text = word.substr(std::min(colon + 1, word.size()));
        std::replace(text.begin(), text.end(), '_', ' ');
        const auto known = std::find(kTypes.begin(), kTypes.end(), type);
        value.vt = static_cast<VARTYPE>(known == kTypes.end() ? std::strtol(type.c_str(), nullptr, 0)
                                                              : known - kTypes.begin());
        value.llVal = std::strtoll(text.c_str(), nullptr, 0);
        if (value.vt == VT_BSTR && colon < word.size())
            value.bstrVal = texts.emplace_back(expand(text, 0).toStdWString().c_str()).get();
        else if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN)
            value.punkVal = objects[text];
        else if (value.vt == VT_R4 && text[1] != 'x')
            value.fltVal = std::strtof(text.c_str(), nullptr);
        else if ((value.vt == VT_R8 || value.vt == VT_DATE) && text[1] != 'x')
            value.dblVal = std::strtod(text.c_str(), nullptr);
        return value;
    }
    /// Reads words up to `->`. A word such as `2=` is the identifier of a named argument; all other words are
    /// arguments. The first identifier names the first argument, the second identifier the second argument,
    /// and so on. The identifiers may be anywhere in the row.
    Arguments argumentsOf(std::istream& words)
    {
        Arguments arguments;
        for (std::string word; words >> word && word != "->";)
            if (word.back() == '=')
                arguments.names.push_back(std::stoi(word));
            else
                arguments.values.push_back(of(word));
        return arguments;
    }
    std::map<std::string, IUnknown*> objects{};
    std::deque<VARIANT> values{};
    std::deque<kel::Bstr> texts{};
};

inline std::string asWord(std::string text)
{
    std::replace(text.begin(), text.end(), ' ', '_');
    return text;
}

/// \param object the text after the colon if the value is an object; not used otherwise
inline std::string wordOf(const VARIANT& value, const std::string& object = {})
{
    if (value.vt == VT_EMPTY)
        return "empty";
    const std::string type = value.vt < kTypes.size() ? kTypes[value.vt] : std::to_string(value.vt);
    if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN)
        return type + ':' + object;
    if (value.vt == VT_BSTR)
        return type + ':' + asWord(std::string(value.bstrVal, value.bstrVal + SysStringLen(value.bstrVal)));
    return type + ':' + std::to_string(value.vt == VT_BOOL ? value.boolVal : value.lVal);
}

} // namespace keltest
