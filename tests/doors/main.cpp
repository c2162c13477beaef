#include "descriptorlimit.h"
#include "mxapplication.h"
#include "testregistry.h"

#include <QDir>

int main(int argc, char **argv)
{
    prepareTests();
    DescriptorLimit::raise(); // five hundred clients, and in one case their server besides
    qputenv("QT_QPA_PLATFORM", "offscreen");
    MxApplication application(argc, argv);
    application.QTimer::stop(); // its seconds are those of a unit, which there is not always
    QDir::setCurrent(MxApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(MxApplication::arguments());
}
