// Each test of guard_calls.txt. Freed memory is overwritten in these runs, or watched by valgrind.

#include "support/calls_by_name.h"

namespace
{

using keltest::Row;

struct GuardCalls : DomTest
{
    explicit GuardCalls(std::string named) : name(std::move(named)) {}
    static void forEachCall(const std::function<void(const std::string& test, Row& row)>& use)
    {
        std::string test;
        keltest::forEachRow(KEL_TESTS "guard_calls.txt", [&](Row row) {
            const bool isTest = row.str()[0] == '=';
            test = isTest ? row.str().substr(2) : test;
            use(test, row);
        });
    }
    void TestBody() override
    {
        keltest::CallsByName calls;
        forEachCall([&](const std::string& test, Row& row) {
            if (test == name && row.peek() != '=')
                calls.make(row);
        });
    }
    const std::string name;
};

const bool areRegistered = [] {
    GuardCalls::forEachCall([](const std::string& test, Row& row) {
        const auto dot = test.find('.');
        if (row.peek() == '=')
            testing::RegisterTest(test.substr(0, dot).c_str(), test.substr(dot + 1).c_str(), nullptr, nullptr,
                                  __FILE__, __LINE__, [test] { return new GuardCalls(test); });
    });
    return true;
}();

} // namespace
