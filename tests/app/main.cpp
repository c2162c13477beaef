#include "mxapplication.h"
#include "testregistry.h"

#include <QDir>
#include <cstdio>

namespace
{
/// A virtual display of the size of the unit's screen. It ends with its last client.
class Display
{
public:
    Display()
        : m_server(
              popen("exec Xvfb -displayfd 1 -terminate -screen 0 1024x600x24 -nolisten tcp 2>/dev/null", "r"))
    {
        char number[16] = "";
        if (std::fgets(number, sizeof number, m_server) == nullptr) {
            qFatal("no display");
        }
        qputenv("DISPLAY", ':' + QByteArray(number).trimmed());
    }
    ~Display() { pclose(m_server); }

private:
    FILE *m_server;
};
} // namespace

int main(int argc, char **argv)
{
    prepareTests();
    const Display display;
    qputenv("QT_QPA_PLATFORM", "xcb");
    // Nothing draws with OpenGL, whose driver leaks when it is unloaded.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    MxApplication application(argc, argv);
    // Its seconds come from the tests.
    application.QTimer::stop();
    QDir::setCurrent(MxApplication::applicationDirPath() + QLatin1String("/.."));
    return runTests(MxApplication::arguments());
}
