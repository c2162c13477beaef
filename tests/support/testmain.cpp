#include "testregistry.h"

#include <QCoreApplication>

/// For test executables that have no `main` of their own.
int main(int argc, char **argv)
{
    prepareTests();
    const QCoreApplication application(argc, argv);
    return runTests(QCoreApplication::arguments());
}
