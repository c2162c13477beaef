#include "testregistry.h"

#include <QFileInfo>
#include <QTest>
#include <csignal>
#include <memory>

std::vector<TestFactory> &registeredTests()
{
    static std::vector<TestFactory> tests;
    return tests;
}

void prepareTests()
{
    std::signal(SIGPIPE, SIG_IGN);
    qputenv("QT_NO_GLIB", "1");
    const QByteArray memory = "/dev/shm";
    if (QFileInfo(memory).isWritable()) {
        qputenv("TMPDIR", memory);
    }
}

int runTests(QStringList arguments)
{
    const bool one = arguments.size() > 1 && arguments.at(1).startsWith(QLatin1String("Test"));
    const QString only = one ? arguments.takeAt(1) : QString();
    int failures = 0;
    for (const TestFactory &make : registeredTests()) {
        const std::unique_ptr<QObject> test(make());
        if (only.isEmpty() || only == QLatin1String(test->metaObject()->className())) {
            failures += QTest::qExec(test.get(), arguments);
        }
    }
    return failures == 0 ? 0 : 1;
}
