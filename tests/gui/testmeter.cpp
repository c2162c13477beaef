#include "meter.h"
#include "testdisplay.h"
#include "testregistry.h"

namespace
{
/// Of a meter with a maximum of 50, and so two columns for each step between columns 12 and 111.
constexpr GUI_Rect Box = {10, 10, 113, 19};

WM_Handle meter(int flags = WM_VISIBLE)
{
    return METER_CreateEx(Box.x0, Box.y0, 104, 10, 0, flags, 7, 50);
}

bool isFrame(int thickness, int x, int y)
{
    return isWithin(Box, x, y) &&
           !isWithin({Box.x0 + thickness, Box.y0 + thickness, Box.x1 - thickness, Box.y1 - thickness}, x, y);
}

/// An application's callback on top of the widget's own behaviour.
int messages = 0;

void count(WM_Message &message)
{
    ++*static_cast<int *>(WM_GetUserData(message.window));
    WM_DefaultProc(message);
    QVERIFY(message.id != WM_DELETE || METER_GetValue(message.window) == 0);
}

void countChanges(WM_Message &message)
{
    messages += message.id == WM_NOTIFY_PARENT && message.value == WM_VALUE_CHANGED ? 1 : 0;
}
} // namespace

/// The example of a widget that is written outside of the library holds to what the library's own do.
class TestMeter : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(); }

    void onlyTheDifferenceIsPainted_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("first"); ///< column of the damage
        QTest::addColumn<int>("last");
        QTest::newRow("up") << 10 << 13 << 32 << 37;
        QTest::newRow("down") << 13 << 12 << 36 << 37;
        QTest::newRow("full, from beyond") << 49 << 99 << 110 << 111;
        QTest::newRow("empty, from beyond") << 2 << -1 << 12 << 15;
        QTest::newRow("the same") << 20 << 20 << 0 << -1;
        QTest::newRow("the same, from beyond") << 50 << 51 << 0 << -1;
    }

    void onlyTheDifferenceIsPainted()
    {
        QFETCH(const int, before);
        QFETCH(const int, value);
        QFETCH(const int, first);
        QFETCH(const int, last);
        const WM_Handle shown = meter();
        METER_SetValue(shown, before);
        paintAnew();
        display.forget();
        METER_SetValue(shown, value);
        QCOMPARE(WM_Exec(), last >= first ? 1 : 0);
        QCOMPARE(display.damage.x0, first);
        QCOMPARE(display.damage.x1, last);
        QVERIFY(display.isDamageWithin(Box));
        const int end = 12 + 2 * METER_GetValue(shown);
        COMPARE_PAINTED(isFrame(1, x, y) || isWithin({12, 12, end - 1, 17}, x, y));
        METER_SetValue(shown, value);
        QCOMPARE(WM_Exec(), 0);
    }

    void itIsAWindowAsAnyOther()
    {
        int heard = 0;
        messages = 0;
        const WM_Handle parent = WM_CreateWindow(0, 0, 128, 64, 0, WM_VISIBLE, countChanges);
        const WM_Handle other = BUTTON_CreateEx(0, 0, 9, 9, 0, WM_VISIBLE, 7);
        const WM_Handle shown = METER_CreateEx(10, 10, 104, 10, parent, WM_VISIBLE, 8, 50);
        WM_SetUserData(shown, &heard);
        WM_SetCallback(shown, count);
        int state[2] = {1, 5};
        const auto ignore = [](WM_Message &, void *) {};
        for (const WM_Handle stranger : {other, WM_CreateWidget(0, 0, 0, 0, 0, 0, 0, ignore, state), 0}) {
            METER_SetValue(stranger, 1);
            QVERIFY(METER_GetValue(stranger) == 0 && state[1] == 5);
        }
        WM_SetFocus(shown);
        for (const int key : {int(GUI_KEY_LEFT), int(GUI_KEY_RIGHT), int(GUI_KEY_RIGHT), int('x')}) {
            GUI_SendKeyMsg(key, 1);
            GUI_SendKeyMsg(key, 0);
        }
        QCOMPARE(METER_GetValue(shown), 2);
        QCOMPARE(messages, 2);
        WM_HideWindow(other);
        WM_SetCallback(parent, nullptr);
        COMPARE_PAINTED(isFrame(2, x, y) || isWithin({12, 12, 15, 17}, x, y));
        WM_DisableWindow(shown);
        COMPARE_PAINTED(isFrame(1, x, y) || isWithin({12, 12, 15, 17}, x, y));
        QVERIFY(heard > 9 && WM_GetFocus() == 0);
        WM_DeleteWindow(shown);
        meter(); // the next start deletes it
        QCOMPARE(WM_CreateWidget(0, 0, 9, 9, 0, WM_VISIBLE, 1, nullptr, nullptr), 0);
    }

    void tooSmallAMeterShowsNoBar()
    {
        const WM_Handle tiny = METER_CreateEx(0, 0, 3, 3, 0, WM_VISIBLE, 1, -5);
        METER_SetValue(tiny, 1);
        COMPARE_PAINTED(isWithin({0, 0, 2, 2}, x, y) && (x != 1 || y != 1));
        QCOMPARE(METER_GetValue(tiny), 1);
    }
};

static const RegisteredTest<TestMeter> registered;
#include "testmeter.moc"
