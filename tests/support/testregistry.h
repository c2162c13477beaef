#pragma once

#include <QObject>
#include <functional>
#include <vector>

/// Lets a test executable hold several test classes, each in a file of its own:
///     static const RegisteredTest<TestRouting> registered;
using TestFactory = std::function<QObject *()>;

std::vector<TestFactory> &registeredTests();

template <typename Test>
struct RegisteredTest {
    RegisteredTest()
    {
        registeredTests().push_back([] { return new Test; });
    }
};
