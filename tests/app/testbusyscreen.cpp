#include "busyscope.h"
#include "product.h"
#include "shell.h"
#include "testregistry.h"

#include <QProcess>
#include <QSignalSpy>

using namespace Touchscreen;

namespace
{
/// A virtual display of the size of the unit's screen, with a finger.
class Display
{
public:
    Display()
    {
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1024x600x24", "-nolisten", "tcp"});
        m_server.waitForReadyRead();
        qputenv("DISPLAY", ':' + m_server.readLine().trimmed());
    }

    ~Display()
    {
        m_server.terminate();
        m_server.waitForFinished();
        qunsetenv("DISPLAY");
    }

    void tap(const QPoint &place, int times = 1) const
    {
        QProcess::execute("xdotool", QString("mousemove %1 %2 click --repeat %3 --delay 20 1")
                                         .arg(QString::number(place.x()), QString::number(place.y()),
                                              QString::number(times))
                                         .split(' '));
    }

private:
    QProcess m_server;
};
} // namespace

/// Operations that block the screen, and what is touched meanwhile.
class TestBusyScreen : public QObject
{
    Q_OBJECT

private slots:
    void whatIsTouchedMeanwhileIsDropped()
    {
        const Shell shell(4);
        MainWindow &window = *shell.window;
        window.OnMenuPressed(3);
        QVERIFY(unlock(window));
        catchUp();
        window.setFixedSize(1024, 600); // the display of the tests is narrower
        for (const auto &[page, name] : {std::pair(1, "<< load"),
                                         {1, "save >>"},
                                         {2, "Load"},
                                         {2, "Save"},
                                         {3, "Load"},
                                         {3, "Save"},
                                         {3, "Lock"}}) {
            window.OnMenuPressed(page);
            const QAbstractButton *busy = button(window, name);
            const QSignalSpy clicks(busy, &QAbstractButton::clicked);
            queueTap(*busy);
            queueTap(*busy);
            queueTap(*menu(window, 0));
            catchUp();
            QVERIFY2(clicks.count() == 1 && shownPage(window) == page, name);
            QVERIFY(busy->isEnabled() && !busy->isDown());
            queueTap(*menu(window, 0));
            catchUp();
            QCOMPARE(shownPage(window), 0);
        }
    }

    void aTouchIsDroppedWholeOrNotAtAll()
    {
        const Shell shell(4);
        MainWindow &window = *shell.window;
        window.OnMenuPressed(3);
        QAbstractButton *lock = button(window, "Lock");
        queueTap(*lock);
        queue(*menu(window, 0), QEvent::MouseButtonPress);
        catchUp();
        queue(*menu(window, 1), QEvent::MouseMove);
        queue(*menu(window, 0), QEvent::MouseButtonRelease);
        catchUp();
        QCOMPARE(shownPage(window), 3);
        // What has waited may take the event loop many turns.
        queueTap(*lock);
        for (int turn = 0; turn < 20; ++turn) {
            queue(window, QEvent::MouseMove);
            QCoreApplication::processEvents();
        }
        queueTap(*menu(window, 0));
        catchUp();
        QCOMPARE(shownPage(window), 3);
        // A finger may have been down before.
        queue(*menu(window, 1), QEvent::MouseButtonPress);
        catchUp();
        QVERIFY(menu(window, 1)->isDown());
        {
            const BusyScope outer(lock);
            const BusyScope inner(lock);
        }
        QVERIFY(lock->isEnabled());
        queue(*menu(window, 1), QEvent::MouseButtonRelease);
        queueTap(*menu(window, 0));
        catchUp();
        QVERIFY(!menu(window, 1)->isDown());
        QCOMPARE(shownPage(window), 1);
        queueTap(*menu(window, 0));
        catchUp();
        QCOMPARE(shownPage(window), 0);
    }

    void threeTapsOnSaveMakeOne()
    {
        const QPoint settings(924, 45), unlock(88, 555), save(765, 560), off(541, 405), on(645, 405);
        TestUnit unit(8);
        const Display display;
        Product product(true, QStringLiteral("xcb"));
        const QMxComm observer(false);
        const auto chooses = [&](const QPoint &button, int beep) {
            return runUntil([&] {
                display.tap(settings);
                display.tap(button);
                return g_mxConfig->beep == beep;
            });
        };
        // The page comes nine seconds after the start.
        QVERIFY(product.await("t1 ") && (chooses(on, 1) || chooses(on, 1)));
        display.tap(unlock);
        for (const int digit : {4, 10, 6, 1, 7, 2, 9, 5}) {
            display.tap({55 + 83 * (digit - 1), 247});
        }
        display.tap({910, 146}); // Enter
        const int before = unit.rises(4);
        for (const int saves : {1, 2}) {
            display.tap(save, 3);
            QVERIFY(chooses(off, 0) && chooses(on, 1));
            QCOMPARE(unit.rises(4), before + 2 * saves);
        }
    }
};

static const RegisteredTest<TestBusyScreen> registered;
#include "testbusyscreen.moc"
