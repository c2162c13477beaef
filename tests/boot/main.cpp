#include "guest.h"
#include "testregistry.h"

#include <QCoreApplication>

/// `test_boot [--ports N] CLASS [FUNCTION] ...` runs classes of tests as a service of the guest, which is a
/// unit of N ports then.
int main(int argc, char **argv)
{
    prepareTests();
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--ports")) {
        g_unit = new GuestUnit(arguments.takeAt(2).toInt());
        arguments.removeAt(1);
    }
    shell("systemd-notify --ready"); // the service may start from now on
    const QString program = arguments.takeFirst();
    int result = 0;
    while (!arguments.isEmpty()) {
        QStringList one = {program, arguments.takeFirst()};
        while (!arguments.isEmpty() && !arguments.first().startsWith(QLatin1String("Test"))) {
            one.append(arguments.takeFirst());
        }
        result |= runTests(one);
    }
    return result;
}
