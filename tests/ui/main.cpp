#include "stylesheet.h"
#include "testregistry.h"

#include <QApplication>
#include <QDir>
#include <QFont>

/// The pages as they are on the unit: under its style sheet, in a working folder that has the pictures.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    application.setStyleSheet(QLatin1String(touchscreenStyleSheet));
    QApplication::setFont(QFont(QStringLiteral("Ubuntu"), 12, QFont::Bold));
    QDir::setCurrent(QApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(QApplication::arguments());
}
