// Runs the tests in tree_calls.txt. A run under valgrind detects any use of freed memory.

#include "support/call_table.h"

namespace
{

using keltest::Row;

struct TreeCalls : DomTest
{
    explicit TreeCalls(std::string named) : name(std::move(named)) {}
    static void forEachCall(const std::function<void(const std::string& test, Row& row)>& use)
    {
        std::string test;
        keltest::forEachRow(KEL_TESTS "tree_calls.txt", [&](Row row) {
            const bool isTest = row.str()[0] == '=';
            test = isTest ? row.str().substr(2) : test;
            use(test, row);
        });
    }
    void TestBody() override
    {
        keltest::CallTable calls;
        forEachCall([&](const std::string& test, Row& row) {
            if (test == name && row.peek() != '=')
                calls.call(row);
        });
    }
    const std::string name;
};

const bool areRegistered = [] {
    TreeCalls::forEachCall([](const std::string& test, Row& row) {
        const auto dot = test.find('.');
        if (row.peek() == '=')
            testing::RegisterTest(test.substr(0, dot).c_str(), test.substr(dot + 1).c_str(), nullptr, nullptr,
                                  __FILE__, __LINE__, [test] { return new TreeCalls(test); });
    });
    return true;
}();

} // namespace
