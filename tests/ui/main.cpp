#include "stylesheet.h"
#include "testregistry.h"

#include <QApplication>
#include <QDir>

/// The pages as they are on the unit: under its style sheet, in a working folder that has the pictures.
int main(int argc, char **argv)
{
    prepareTests();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    setTouchscreenStyle();
    QDir::setCurrent(QApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(QApplication::arguments());
}
