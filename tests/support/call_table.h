// Runs a table whose rows call members of objects by name. late_bound_calls.txt explains the rows.

#pragma once

#include "support/call_by_name.h"
#include "support/dom_fixture.h"
#include "support/variant_text.h"

namespace keltest
{

/// Makes the calls of a table, and keeps the objects that the rows name.
class CallTable
{
public:
    /// Makes the call of a row: OBJECT MEMBER ARGUMENTS -> CODE RESULT NAME. Expects CODE and RESULT, and
    /// keeps the returned object as NAME.
    void call(Row& words)
    {
        SCOPED_TRACE(words.where);
        std::string object, member, codeWord = "done", expected, name;
        words >> object >> member;
        if (member == "new") {
            keep(object, ComPtr<IDispatch>(newDocument().get()));
            return;
        }
        const ComPtr<IDispatch> called = m_objects[object];
        ASSERT_TRUE(called) << "an earlier row must name the object " << object;
        if (member == "release") {
            m_objects.erase(object);
            return;
        }
        Arguments arguments = m_variants.argumentsOf(words);
        words >> codeWord >> expected >> name;
        Variant result;
        const WORD flags =
            arguments.names.empty() ? DISPATCH_METHOD | DISPATCH_PROPERTYGET : DISPATCH_PROPERTYPUT;
        const HRESULT code = callByName(*called, std::wstring(member.begin(), member.end()), flags, result,
                                        arguments.parameters());
        const auto given = result.type() == VT_DISPATCH ? result.object() : nullptr;
        ComPtr<IXMLDOMNode> node;
        if (given)
            given->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(node.put()));
        const std::wstring nodeName = node ? nameOf(*node) : given ? L"" : L"-";
        const std::string word = wordOf(result.get(), std::string(nodeName.begin(), nodeName.end()));
        EXPECT_EQ(codeWord + ' ' + (expected.empty() ? word : expected),
                  asWord(kel::describe(code)) + ' ' + word);
        if (!name.empty())
            keep(name, given);
    }

private:
    void keep(const std::string& name, const ComPtr<IDispatch>& object)
    {
        m_variants.objects[name] = (m_objects[name] = object).get();
    }

    std::map<std::string, ComPtr<IDispatch>> m_objects;
    Variants m_variants;
};

} // namespace keltest
