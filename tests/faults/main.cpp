#include "qmxcomm.h"
#include "testregistry.h"

#include <QCoreApplication>
#include <cstdio>

/// Saves the captions of the unit once for each line that comes, and answers with a line. For want of a way
/// into the product that leads there without a screen.
static int saveCaptions()
{
    QMxComm unit(false);
    for (char line[16]; std::fgets(line, sizeof line, stdin) != nullptr; std::fflush(stdout)) {
        unit.SaveCaption();
        std::puts("saved");
    }
    return 0;
}

int main(int argc, char **argv)
{
    prepareTests();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    return arguments.last() == QLatin1String("captions") ? saveCaptions() : runTests(arguments);
}
