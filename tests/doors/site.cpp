#include "site.h"

#include "clientturns.h"
#include "mainwindow.h"
#include "qmxswitch.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "touchscreen.h"

#include <QButtonGroup>
#include <QScrollArea>
#include <sys/wait.h>
#include <unistd.h>

struct Site::Window {
    ClientTurns turns;
    QMxUdp udp{turns, nullptr};
    QMxTcp tcp{turns, nullptr};
    MainWindow window;
};

Site::Site(Operation operation)
    : m_unit(operation == Panel ? 40 : 160, {{"system/keypad", operation == Panel ? "1" : "0"}})
{
    if (operation == Touchscreen) {
        m_unit.start();
        m_window = std::make_unique<Window>();
        m_window->window.show();
        Touchscreen::tick(m_window->window);
        m_window->turns.start();
    } else {
        m_product = std::make_unique<Product>();
        m_observer = std::make_unique<QMxComm>(false);
        const auto isUp = [&] { return operation == Process || m_unit.hardware().keys().isLit(1); };
        if (!m_unit.hardware().waitFor(isUp, 20000)) {
            qFatal("the panel does not come up");
        }
    }
}

Site::~Site() = default;

void Site::touch(const Routes &routes)
{
    const auto *page = m_window->window.findChild<QMxSwitch *>();
    const QList<QButtonGroup *> groups = page->findChildren<QButtonGroup *>();
    const QList<QScrollArea *> areas = page->findChildren<QScrollArea *>();
    for (const Route &route : routes) {
        for (const int side : {0, 1}) {
            QAbstractButton *button = groups[side]->button(side == 0 ? route.second : route.first);
            areas[side]->ensureWidgetVisible(button);
            Touchscreen::queueTap(*button);
            QCoreApplication::processEvents();
        }
    }
}

void Site::pressKeys(const Routes &routes)
{
    for (const Route &route : routes) {
        for (const int key : {route.second + 1, 51 + route.first}) {
            m_unit.hardware().pressKey(key);
            m_unit.hardware().releaseKey(key);
        }
    }
}

void Site::storeFromOutside(const Routes &routes)
{
    const pid_t other = ::fork();
    if (other == 0) {
        for (const Route &route : routes) {
            g_mxConfig->map[route.first] = static_cast<quint16>(route.second);
        }
        ::_exit(0);
    }
    ::waitpid(other, nullptr, 0);
}
