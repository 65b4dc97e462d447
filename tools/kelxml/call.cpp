// The subcommand `call`: looks up methods and properties by name, and invokes them through `IDispatch`.

#include "KelComWrapper/bstr.h"
#include "KelComWrapper/variant_owner.h"
#include "commands.h"
#include "expression.h"
#include "files.h"
#include "late_bound.h"
#include "text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cwctype>
#include <iostream>

#include <unistd.h>

namespace tool
{
namespace
{

constexpr GUID kNoInterface{};
constexpr LCID kNeutral = 0;

/// Throws a `Failure` that says which step of a path failed, and why.
[[noreturn]] void failStep(std::wstring_view step, const std::string& reason)
{
    throw Failure("'" + toUtf8(step) + "': " + reason);
}

/// Describes the failure that a member reported in `exception`. Frees the BSTRs in `exception`.
std::string describeException(const EXCEPINFO& exception)
{
    kel::Bstr source;
    kel::Bstr description;
    kel::Bstr helpFile;
    source.reset(exception.bstrSource);
    description.reset(exception.bstrDescription);
    helpFile.reset(exception.bstrHelpFile);
    const std::string words = kel::describe(DISP_E_EXCEPTION) + ", " + kel::describe(exception.scode);
    return description ? words + ", " + toUtf8(description.c_str()) : words;
}

DISPID identifierOf(IDispatch& object, const std::wstring& name, std::wstring_view step)
{
    const kel::Bstr text(name.c_str());
    wchar_t* names = text.get();
    DISPID identifier = DISPID_UNKNOWN;
    const HRESULT code = object.GetIDsOfNames(kNoInterface, &names, 1, kNeutral, &identifier);
    if (FAILED(code))
        failStep(step, kel::describe(code));
    return identifier;
}

/// The result and the return code of a call.
struct CallResult
{
    kel::Variant value;
    HRESULT code;
};

/// Whether an argument is a null text. If an argument in an expression is the word `null`, `invoke` first
/// passes a null text. If the member expects an object, this call fails, and `invoke` calls the member again
/// with a null object.
bool isNullText(const VARIANT& value)
{
    return value.vt == VT_BSTR && !value.bstrVal;
}

/// Calls one member.
/// \param values the arguments in the order of the expression; in an assignment, the assigned value comes
///        last
/// \throw Failure if the member cannot be called, is a no-op, or fails
CallResult invoke(IDispatch& object, const Step& step, const std::vector<kel::Variant>& values,
                  bool isAssignment)
{
    const DISPID member = identifierOf(object, step.name, step.source);
    if (isNoOp(object, step.name, isAssignment))
        failStep(step.source, "this member accepts calls but does nothing");
    std::vector<VARIANT> reversed;
    for (auto value = values.rbegin(); value != values.rend(); ++value)
        reversed.push_back(value->get());

    DISPPARAMS parameters{};
    parameters.rgvarg = reversed.data();
    parameters.cArgs = static_cast<UINT>(reversed.size());
    DISPID assigned = DISPID_PROPERTYPUT;
    WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    if (isAssignment) {
        parameters.rgdispidNamedArgs = &assigned;
        parameters.cNamedArgs = 1;
        flags = DISPATCH_PROPERTYPUT;
        if (reversed.front().vt == VT_DISPATCH)
            flags |= DISPATCH_PROPERTYPUTREF;
    }

    kel::Variant result;
    EXCEPINFO exception{};
    UINT badArgument = parameters.cArgs;
    const auto call = [&] {
        return object.Invoke(member, kNoInterface, kNeutral, flags, &parameters, result.put(), &exception,
                             &badArgument);
    };
    HRESULT code = call();
    while (code == DISP_E_TYPEMISMATCH && badArgument < parameters.cArgs &&
           isNullText(reversed[badArgument])) {
        reversed[badArgument] = kel::Variant(kel::ComPtr<IDispatch>()).get();
        code = call();
    }
    if (code == DISP_E_EXCEPTION)
        failStep(step.source, describeException(exception));
    if (FAILED(code)) {
        const bool isKnown = badArgument < parameters.cArgs;
        failStep(step.source, kel::describe(code) +
                                  (isKnown ? ", argument " + std::to_string(parameters.cArgs - badArgument)
                                           : std::string()));
    }
    return {std::move(result), code};
}

bool changesDocument(std::wstring member)
{
    std::transform(member.begin(), member.end(), member.begin(), std::towlower);
    static constexpr std::wstring_view kChanging[] = {L"appendchild", L"load", L"loadxml", L"removechild",
                                                      L"setattribute"};
    return std::find(std::begin(kChanging), std::end(kChanging), member) != std::end(kChanging);
}

/// Evaluates paths. Each path starts at the document.
class Evaluator
{
public:
    explicit Evaluator(IDispatch& document) : m_document(document) {}

    kel::Variant evaluate(const Expression& expression)
    {
        return follow(expression.path, expression.assigned);
    }
    /// Whether `evaluate` has called a member that changes the document.
    bool hasChanged() const { return m_hasChanged; }

private:
    kel::Variant follow(const Path& path, const std::vector<Argument>& assigned)
    {
        kel::ComPtr<IDispatch> object(&m_document);
        kel::Variant result;
        for (std::size_t index = 0; index < path.size(); ++index) {
            const Step& step = path[index];
            if (!object)
                failStep(path[index - 1].source,
                         "returned no object, so '" + toUtf8(step.name) + "' cannot be called");
            const bool isAssignment = index + 1 == path.size() && !assigned.empty();
            std::vector<kel::Variant> values = valuesOf(step.arguments);
            if (isAssignment)
                values.push_back(valueOf(assigned.front()));
            CallResult called = invoke(*object, step, values, isAssignment);
            if (called.code == S_FALSE)
                failStep(step.source, "S_FALSE: the member has no result or did nothing");
            m_hasChanged = m_hasChanged || isAssignment || changesDocument(step.name);
            result = std::move(called.value);
            object = result.type() == VT_DISPATCH ? result.object() : nullptr;
        }
        return result;
    }

    std::vector<kel::Variant> valuesOf(const std::vector<Argument>& arguments)
    {
        std::vector<kel::Variant> values;
        values.reserve(arguments.size());
        for (const Argument& argument : arguments)
            values.push_back(valueOf(argument));
        return values;
    }

    kel::Variant valueOf(const Argument& argument)
    {
        return std::visit(
            [this](const auto& value) {
                if constexpr (std::is_same_v<std::decay_t<decltype(value)>, Path>)
                    return follow(value, {});
                else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::nullptr_t>)
                    return kel::Variant(static_cast<const wchar_t*>(nullptr));
                else
                    return kel::Variant(value);
            },
            argument.value);
    }

    IDispatch& m_document;
    bool m_hasChanged = false;
};

/// Returns the node name of an object, or "(object)" for an object without a node name, such as a list or a
/// map.
std::string objectText(IDispatch& object)
{
    try {
        const kel::Variant name = invoke(object, {L"nodeName", {}, L"nodeName"}, {}, false).value;
        return name.type() == VT_BSTR ? toUtf8(name.text()) : "(object)";
    } catch (const Failure&) {
        return "(object)";
    }
}

template <class Number>
std::string numberText(Number number)
{
    std::array<char, 64> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return {digits.data(), written.ptr};
}

std::string resultText(const kel::Variant& result)
{
    const VARIANT& value = result.get();
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return "(empty)";
    case VT_BSTR:
        return toUtf8(result.text());
    case VT_BOOL:
        return value.boolVal ? "true" : "false";
    case VT_I2:
        return numberText(value.iVal);
    case VT_I4:
    case VT_INT:
        return numberText(value.lVal);
    case VT_I8:
        return numberText(value.llVal);
    case VT_R8:
        return numberText(value.dblVal);
    case VT_DISPATCH:
        return value.pdispVal ? objectText(*value.pdispVal) : "(empty)";
    case VT_UNKNOWN:
        return value.punkVal ? "(object)" : "(empty)";
    default:
        return "(a value of type " + std::to_string(value.vt) + ')';
    }
}

/// Prints the text and a line break. Escapes control characters if the stream is a terminal. Files and other
/// programs receive the original characters.
/// \param stream the standard output or the standard error
void printResult(std::ostream& stream, const std::string& text)
{
    const bool isTerminal = isatty(&stream == &std::cerr ? STDERR_FILENO : STDOUT_FILENO);
    stream << (isTerminal ? printable(text) : text) << '\n';
}

/// Call this function before saving. Throws a `Failure` if the saved document could not be loaded again. For
/// example, `createNode` can create an element with the name "1 x", which parsers refuse.
void requireReadable(const kel::Document& document, const std::string& path)
{
    try {
        kel::Document::parse(document.toString());
    } catch (const kel::LoadError& error) {
        throw Failure(path +
                      " was not written, because the changed document could not be loaded: " + error.what());
    }
}

} // namespace

bool runCall(const Arguments& arguments)
{
    requireText(arguments.values[1]);
    const std::wstring text = toWide(arguments.values[1]);
    const Expression expression = parseExpression(text);
    const kel::Document document = load(arguments.values[0]);
    registerTypeLibrary();
    const kel::ComPtr<IXMLDOMDocument> object = document.get();
    Evaluator evaluator(*object);
    const std::string result = resultText(evaluator.evaluate(expression));
    if (arguments.output) {
        requireReadable(document, *arguments.output);
        save(document, *arguments.output);
        printResult(reportStream(*arguments.output), result);
    } else {
        printResult(std::cout, result);
        if (evaluator.hasChanged())
            std::cerr << "kelxml: the change is lost, because -o was not given\n";
    }
    return true;
}

} // namespace tool
