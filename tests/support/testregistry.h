#pragma once

#include <QObject>
#include <QStringList>
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

/// To be called before the application is made: tests run on the program's own event loop, and their units
/// lie in memory, so that no file waits for a disk.
void prepareTests();

/// Runs the registered classes. A class's name as the first argument runs that class alone, with the
/// arguments of Qt Test behind it. \return the exit code
int runTests(QStringList arguments);
