#include "busyscope.h"
#include "rows.h"
#include "shell.h"
#include "testregistry.h"

#include <QProcess>
#include <QSignalSpy>

using namespace Touchscreen;

namespace
{
/// Taps the display. What the widget's window does with it, it does in the event loop.
void tap(const QWidget &widget, int times = 1)
{
    const QPoint place = widget.mapToGlobal(widget.rect().center());
    QProcess::execute("xdotool",
                      QString("mousemove %1 %2 click --repeat %3 --delay 20 1")
                          .arg(QString::number(place.x()), QString::number(place.y()), QString::number(times))
                          .split(' '));
}
} // namespace

/// Operations that block the screen, and what is touched meanwhile.
class TestBusyScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_shell = std::make_unique<Shell>(4);
        window().OnMenuPressed(3);
        QVERIFY(unlock(window()));
        QVERIFY(runUntil([&] { return window().windowHandle()->isExposed(); }));
    }

    void cleanupTestCase() { m_shell.reset(); }

    void whatIsTouchedMeanwhileIsDropped_data()
    {
        columns<int, QByteArray>("page", "name");
        row("load a scene", 1, "<< load");
        row("save a scene", 1, "save >>");
        row("load captions", 2, "Load");
        row("save captions", 2, "Save");
        row("load settings", 3, "Load");
        row("save settings", 3, "Save");
        row("lock", 3, "Lock");
    }
    void whatIsTouchedMeanwhileIsDropped()
    {
        QFETCH(int, page);
        QFETCH(QByteArray, name);
        window().OnMenuPressed(page);
        const QAbstractButton *busy = button(window(), name);
        const QSignalSpy clicks(busy, &QAbstractButton::clicked);
        queueTap(*busy);
        queueTap(*busy);
        queueTap(*menu(window(), 0));
        catchUp();
        QVERIFY(clicks.count() == 1 && shownPage(window()) == page);
        QVERIFY(busy->isEnabled() && !busy->isDown());
        queueTap(*menu(window(), 0));
        catchUp();
        QCOMPARE(shownPage(window()), 0);
    }

    void aTouchIsDroppedWholeOrNotAtAll()
    {
        window().OnMenuPressed(3);
        QAbstractButton *lock = button(window(), "Lock");
        queueTap(*lock);
        queue(*menu(window(), 0), QEvent::MouseButtonPress);
        catchUp();
        queue(*menu(window(), 1), QEvent::MouseMove);
        queue(*menu(window(), 0), QEvent::MouseButtonRelease);
        catchUp();
        QCOMPARE(shownPage(window()), 3);
        // What has waited may take the event loop many turns.
        queueTap(*lock);
        for (int turn = 0; turn < 20; ++turn) {
            queue(window(), QEvent::MouseMove);
            QCoreApplication::processEvents();
        }
        queueTap(*menu(window(), 0));
        catchUp();
        QCOMPARE(shownPage(window()), 3);
        // A finger may have been down before.
        queue(*menu(window(), 1), QEvent::MouseButtonPress);
        catchUp();
        QVERIFY(menu(window(), 1)->isDown());
        {
            const BusyScope outer(lock);
            const BusyScope inner(lock);
        }
        QVERIFY(lock->isEnabled());
        queue(*menu(window(), 1), QEvent::MouseButtonRelease);
        queueTap(*menu(window(), 0));
        catchUp();
        QVERIFY(!menu(window(), 1)->isDown());
        QCOMPARE(shownPage(window()), 1);
    }

    /// On the way through the window system.
    void threeTapsOnSaveMakeOne()
    {
        window().OnMenuPressed(3);
        QVERIFY(unlock(window()));
        TestUnit &unit = m_shell->unit;
        const int before = unit.rises(4);
        tap(*button(window(), "Save"), 3);
        // Comes behind the three, once it is not dropped itself.
        QVERIFY(runUntil([&] {
            tap(*button(window(), "Off"));
            catchUp();
            return unit.shm().beep == 0;
        }));
        unit.comm().MxGpioWrite(GpioLine::SceneIndicator, 1);
        QVERIFY(runUntil([&] { return unit.rises(9) == 1; }));
        QCOMPARE(unit.rises(4), before + 2);
    }

private:
    MainWindow &window() { return *m_shell->window; }

    std::unique_ptr<Shell> m_shell;
};

static const RegisteredTest<TestBusyScreen> registered;
#include "testbusyscreen.moc"
