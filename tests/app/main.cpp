#include "mxapplication.h"
#include "testregistry.h"

#include <QDir>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    MxApplication application(argc, argv);
    // Its seconds come from the tests.
    application.QTimer::stop();
    QDir::setCurrent(MxApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(MxApplication::arguments());
}
