// Measures the touchscreen: painting, refreshes, touches, page switches, start and memory.

#include "screens.h"

#include "allocations.h"
#include "mainwindow.h"
#include "paintcounter.h"
#include "qmxscene.h"
#include "qmxswitch.h"
#include "samples.h"
#include "stylesheet.h"
#include "testunit.h"

#include <QApplication>
#include <QButtonGroup>
#include <QDir>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimerEvent>
#include <cstdio>
#include <memory>

namespace
{
constexpr int RestMs = 10000;

void send(QObject *receiver, QEvent &&event)
{
    QCoreApplication::sendEvent(receiver, &event);
}

/// The window with all of its pages, on a unit of this size.
struct Screen {
    explicit Screen(int ports)
        : unit(ports)
    {
        unit.start();
        window.reset(new MainWindow);
        window->show();
        for (int page = 0; page < 5; ++page) {
            send(window.get(), QTimerEvent(-1));
        }
        rest(500);
    }

    static void rest(int ms)
    {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!elapsed.hasExpired(ms)) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        }
    }

    TestUnit unit;
    std::unique_ptr<MainWindow> window;
};

void countPaintsAtRest(Screen &screen)
{
    const char *const names[] = {"switch", "scenes", "captions", "settings (a status line a second)"};
    std::printf("\npaint events in 10 s with nothing changed\n");
    for (int menu = 0; menu < 4; ++menu) {
        screen.window->OnMenuPressed(menu);
        Screen::rest(500);
        PaintCounter paints;
        qApp->QCoreApplication::installEventFilter(&paints);
        Screen::rest(RestMs);
        qApp->QCoreApplication::removeEventFilter(&paints);
        std::printf("    %-42s %10d\n", names[menu], paints.count);
    }
}

template <typename Page>
void measureRefresh(Screen &screen, int menu, const char *name)
{
    screen.window->OnMenuPressed(menu);
    Screen::rest(500);
    auto *page = screen.window->findChild<Page *>();
    constexpr int Count = 1000;
    const unsigned long before = allocationCount();
    const double start = nowMicroseconds();
    for (int i = 0; i < Count; ++i) {
        send(page, QTimerEvent(-1));
    }
    const double each = (nowMicroseconds() - start) / Count;
    std::printf("    %-42s %10.2f us, %lu allocations in %d\n", name, each, allocationCount() - before,
                Count);
}

void measureTouch(Screen &screen)
{
    screen.window->OnMenuPressed(0);
    Screen::rest(500);
    const QList<QButtonGroup *> groups =
        screen.window->findChild<QMxSwitch *>()->findChildren<QButtonGroup *>();
    QAbstractButton *output = groups.at(1)->button(1);
    const QPointF place = output->rect().center();
    const auto touch = [&](QEvent::Type type) {
        send(output, QMouseEvent(type, place, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    };
    Samples touches;
    int changed = 0;
    for (int i = 0; i < 1000; ++i) {
        touch(QEvent::MouseButtonPress);
        const quint16 before = screen.unit.shm().map[1];
        const double start = nowMicroseconds();
        touch(QEvent::MouseButtonRelease);
        touches.add(nowMicroseconds() - start);
        changed += screen.unit.shm().map[1] != before;
    }
    std::printf("    %-42s %10.2f us, %d of 1000 changed the map\n",
                "finger lifted to map entry, button redrawn", touches.median(), changed);
}

void measurePageSwitch(Screen &screen)
{
    const QList<QPushButton *> buttons = screen.window->findChildren<QPushButton *>();
    Samples switches;
    for (int i = 0; i < 40; ++i) {
        const double start = nowMicroseconds();
        screen.window->OnMenuPressed(i % 4);
        QCoreApplication::processEvents();
        switches.add((nowMicroseconds() - start) / 1000);
        Screen::rest(50);
    }
    std::printf("    %-42s %10.2f ms, at most %.2f, %s\n", "page switch, all of it painted",
                switches.median(), switches.percentile(100),
                buttons == screen.window->findChildren<QPushButton *>() ? "no button rebuilt"
                                                                        : "buttons rebuilt");
}

void measurePages(int ports)
{
    Screen screen(ports);
    std::printf("\nat %d ports\n", ports);
    measureRefresh<QMxSwitch>(screen, 0, "refresh of the switch page, unchanged");
    measureRefresh<QMxScene>(screen, 1, "refresh of the scene page, unchanged");
    measureTouch(screen);
    measurePageSwitch(screen);
    if (ports == 160) {
        countPaintsAtRest(screen);
    }
}
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QDir::setCurrent(QApplication::applicationDirPath() + QLatin1String("/.."));
    setTouchscreenStyle();
    measureMapView();
    measurePages(16);
    measurePages(160);
    measureScreenStart();
    return 0;
}
