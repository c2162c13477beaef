#include "mxapplication.h"
#include "rows.h"
#include "shell.h"
#include "stylesheet.h"
#include "testregistry.h"
#include "wakingtouch.h"

#include <QPushButton>
#include <QSignalSpy>

using namespace Touchscreen;

namespace
{
/// Lets so many seconds pass without a touch.
void idle(int seconds)
{
    auto *timer = static_cast<QTimer *>(static_cast<MxApplication *>(QCoreApplication::instance()));
    for (int i = 0; i < seconds; ++i) {
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    }
}

void deliver(QWidget &widget, std::initializer_list<QEvent::Type> types)
{
    const QPoint place(5, 5);
    for (const QEvent::Type type : types) {
        QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
}
} // namespace

/// The application and its window, with the pages in it.
class TestShell : public QObject
{
    Q_OBJECT

private slots:
    void theScreenSleepsWhenNobodyTouchesIt_data()
    {
        columns<int, int>("sleep", "seconds"); // 0: it never does
        row("a minute", 0, 60);
        row("five minutes", 1, 300);
        row("15 minutes", 2, 900);
        row("30 minutes", 3, 1800);
        row("never", 4, 0);
        row("below all settings", -1, 0);
    }
    void theScreenSleepsWhenNobodyTouchesIt()
    {
        QFETCH(int, sleep);
        QFETCH(int, seconds);
        TestUnit unit(8, {{"system/sleep", std::to_string(sleep)}, {"system/backlight", "3"}});
        unit.start(false);
        const int lastSecond = seconds > 0 ? seconds - 1 : 5000;
        QWidget pad;
        deliver(pad, {QEvent::MouseButtonPress});
        idle(lastSecond);
        QCOMPARE(unit.hardware().files().backlight(), 4);
        deliver(pad, {QEvent::MouseButtonDblClick, QEvent::MouseMove}); // only the second counts
        idle(lastSecond);
        QCOMPARE(unit.hardware().files().backlight(), 4);
        deliver(pad, {QEvent::MouseButtonDblClick});
        idle(1);
        QCOMPARE(unit.hardware().files().backlight(), seconds > 0 ? 0 : 4);
        const int power = seconds > 0 ? 0 : 1;
        QVERIFY(unit.hardware().waitFor([&] { return unit.hardware().gpio().level(0) == power; }, 5000));
    }

    void theWholeTouchThatWakesIsSwallowed()
    {
        TestUnit unit(8, {{"system/sleep", "0"}});
        unit.start(false);
        QPushButton button;
        button.resize(100, 100);
        const QSignalSpy clicks(&button, &QPushButton::clicked);
        button.show();
        idle(60);
        QCOMPARE(unit.hardware().files().backlight(), 0);
        deliver(button, {QEvent::MouseMove, QEvent::MouseButtonPress, QEvent::MouseButtonRelease});
        QCOMPARE(unit.hardware().files().backlight(), 1);
        QCOMPARE(clicks.count(), 0);
        deliver(button, {QEvent::MouseButtonPress, QEvent::MouseButtonRelease});
        QCOMPARE(clicks.count(), 1);
    }

    void aPressIsOfTheTouchThatWoke()
    {
        const auto isOfIt = [](QEvent::Type wokenBy, QEvent::Type next, int y, quint32 after) {
            WakingTouch touch;
            touch.begin(wokenBy, {20, 20}, 5000);
            const bool first = touch.continues(next, {20, y}, 5000 + after);
            return first && !touch.continues(QEvent::MouseButtonPress, {20, 20}, 5000 + after);
        };
        QVERIFY(isOfIt(QEvent::MouseMove, QEvent::MouseButtonPress, 20, 100));
        QVERIFY(!isOfIt(QEvent::MouseMove, QEvent::MouseButtonPress, 20, 101));
        QVERIFY(!isOfIt(QEvent::MouseMove, QEvent::MouseButtonPress, 21, 0));
        QVERIFY(!isOfIt(QEvent::MouseMove, QEvent::MouseButtonRelease, 20, 0));
        QVERIFY(!isOfIt(QEvent::MouseButtonPress, QEvent::MouseButtonPress, 20, 0));
    }

    void settingsThatArriveLightNoDarkScreen()
    {
        Shell shell(4, {{"system/sleep", "0"}, {"system/backlight", "1"}});
        TestUnit &unit = shell.unit;
        idle(60);
        unit.shm().backlight = 6;
        QVERIFY(unit.run("beepon") == 0 && unit.shm().beep == 1);
        QCOMPARE(unit.hardware().files().backlight(), 0);
        deliver(*shell.window, {QEvent::MouseButtonPress});
        QCOMPARE(unit.hardware().files().backlight(), 7);
    }

    void theSettingMayChangeMeanwhile()
    {
        TestUnit unit(8, {{"system/sleep", "7"}});
        unit.start(false);
        const auto lightAfter = [&](int sleep, int seconds) {
            unit.shm().sleep = sleep;
            idle(seconds);
            return unit.hardware().files().backlight();
        };
        QVERIFY(lightAfter(7, 100) == 1 && lightAfter(4, 1) == 1 && lightAfter(0, 59) == 1);
        QWidget pad;
        deliver(pad, {QEvent::MouseMove});
        QVERIFY(lightAfter(7, 100) == 1 && lightAfter(0, 1) == 0);
        deliver(pad, {QEvent::MouseButtonRelease});
        QCOMPARE(unit.hardware().files().backlight(), 1);
    }

    void thePagesComeOneByOne()
    {
        const Shell shell;
        MainWindow &window = *shell.window;
        QCOMPARE(window.size(), QSize(1024, 600));
        QCOMPARE(misplaced(window), QStringList());
        QVERIFY(menu(window, 0)->isChecked());
        for (int id = 0; id < 4; ++id) {
            QCOMPARE(menu(window, id)->mapTo(&window, QPoint()), QPoint(224 + 200 * id, 0));
            QTest::mouseClick(menu(window, id), Qt::LeftButton);
            QCOMPARE(shownPage(window), -1);
        }
        tick(window);
        QCOMPARE(shownPage(window), 0);
        QVERIFY(button(window, "1")->isChecked());
        QTest::mouseClick(menu(window, 1), Qt::LeftButton);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(shownPage(window), -1);
            tick(window);
        }
        QCOMPARE(window.findChildren<QMxStatus *>().size(), 1);
        for (int id = 3; id >= 0; --id) { // a menu opens when the finger leaves it
            QTest::mousePress(menu(window, id), Qt::LeftButton);
            QVERIFY(shownPage(window) != id);
            QMouseEvent slide(QEvent::MouseMove, {10, 200}, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(menu(window, id), &slide);
            QCOMPARE(shownPage(window), id);
            QCOMPARE(pagesOf(window).at(id)->geometry(), QRect(0, 95, 1024, 505));
        }
        for (const int id : {-1, 4, 1000, INT_MIN}) {
            window.OnMenuPressed(id);
            QCOMPARE(shownPage(window), 0);
        }
        window.findChild<QMxSwitch *>()->OnActionPressed(4);
        QCOMPARE(shownPage(window), 1);
        QVERIFY(menu(window, 1)->isChecked() && !menu(window, 0)->isChecked());
    }

    void oneLockForThreePages()
    {
        const Shell shell(3);
        MainWindow &window = *shell.window;
        const auto unlocked = [&](int id) {
            window.OnMenuPressed(id);
            return button(window, id == 1 ? "save >>" : "Save")->isEnabled();
        };
        QVERIFY(!unlocked(1) && !unlocked(2)); // the page with the lock is not there yet
        tick(window);
        QVERIFY(!unlocked(1) && !unlocked(2) && !unlocked(3));
        QVERIFY(unlock(window));
        QVERIFY(unlocked(1) && unlocked(2) && unlocked(3));
        QVERIFY(touch(window, "Lock"));
        QVERIFY(!unlocked(1) && !unlocked(2) && !unlocked(3));
    }

    void savedCaptionsAreOnAllPages()
    {
        const Shell shell(3);
        MainWindow &window = *shell.window;
        window.findChild<QMxSetup *>()->setSaveEnabled(true);
        for (const auto &[list, entry] : {std::pair("Input", "3"), {"Output", "4"}, {"Scene", "5"}}) {
            window.OnMenuPressed(2);
            QVERIFY(touch(window, list) && touch(window, entry));
            QVERIFY(touch(*window.findChild<QMxKeyboard *>(), "z") && touch(window, "Enter"));
            QVERIFY(touch(window, "Save"));
        }
        window.OnMenuPressed(0);
        QVERIFY(button(window, "3z") != nullptr && button(window, "4z") != nullptr);
        window.OnMenuPressed(1);
        QVERIFY(button(window, "5z") != nullptr);
    }

    void picturesMayBeMissing()
    {
        setTouchscreenStyle();
        for (const char *images : {"none", "no) such; {%s} %1"}) {
            const Shell shell(1, {{"system/images", images}});
            MainWindow &window = *shell.window;
            QTest::mouseClick(menu(window, 2), Qt::LeftButton);
            QCOMPARE(colourAt(*menu(window, 2), {100, 45}), QColor(0x01AFF4));
            QCOMPARE(colourAt(*menu(window, 1), {100, 45}), QColor(0x888888));
            window.OnMenuPressed(0);
            QVERIFY(touch(window, "3", 1));
            QCOMPARE(int(g_mxConfig->map[2]), int(MxNoInput)); // it did carry input 1
        }
        qApp->setStyleSheet(QString());
    }
};

static const RegisteredTest<TestShell> registered;
#include "testshell.moc"
