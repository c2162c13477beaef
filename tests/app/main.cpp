#include "mxapplication.h"
#include "testregistry.h"

#include <QDir>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const MxApplication application(argc, argv);
    QDir::setCurrent(MxApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(MxApplication::arguments());
}
