#include "meter.h"
#include "testdisplay.h"
#include "testregistry.h"

namespace
{
int changes = 0;

void listen(WM_Message &message)
{
    changes += message.id == WM_NOTIFY_PARENT && message.value == WM_VALUE_CHANGED ? 1 : 0;
    WM_DefaultProc(message);
    QVERIFY(message.id != WM_DELETE || METER_GetValue(message.window) == 0);
}

/// With a maximum of 50, and so two columns for each step, from column 12 to 111.
WM_Handle createMeter(WM_Handle parent)
{
    return METER_CreateEx(10, 10, 104, 10, parent, WM_VISIBLE, 7, 50);
}
} // namespace

/// What is special about the example of a widget that is written outside of the library; TestWidgets looks at
/// the rest.
class TestMeter : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheDifferenceIsPainted()
    {
        start();
        const WM_Handle meter = createMeter(0);
        METER_SetValue(meter, 13);
        WM_Exec();
        display.forget();
        METER_SetValue(meter, 10);
        WM_Exec();
        QVERIFY(display.damage.x0 == 32 && display.damage.x1 == 37);
        METER_SetValue(meter, 51);
        COMPARE_PAINTED(isWithin({10, 10, 113, 19}, x, y) &&
                        (!isWithin({11, 11, 112, 18}, x, y) || isWithin({12, 12, 111, 17}, x, y)));
        QCOMPARE(METER_GetValue(meter), 50);
    }

    void itIsAWidgetAsAnyOther()
    {
        start();
        int state[2] = {1, 5};
        const auto ignore = [](WM_Message &, void *) {};
        METER_SetValue(WM_CreateWidget(0, 0, 0, 0, 0, WM_HIDDEN, 1, ignore, state), 1);
        QCOMPARE(state[1], 5);
        const WM_Handle parent = WM_CreateWindow(0, 0, 128, 64, 0, WM_VISIBLE, listen);
        const WM_Handle meter = createMeter(parent);
        WM_SetCallback(meter, listen);
        WM_SetUserData(meter, &state);
        WM_SetFocus(meter);
        for (const int key : {int(GUI_KEY_LEFT), int(GUI_KEY_RIGHT), int(GUI_KEY_RIGHT), int('x')}) {
            GUI_SendKeyMsg(key, 1), GUI_SendKeyMsg(key, 0);
        }
        QVERIFY(METER_GetValue(meter) == 2 && changes == 2 && WM_GetUserData(meter) == &state);
        QVERIFY(WM_Exec() == 1 && display.dots[11][11] == 0);
        WM_DisableWindow(meter);
        QVERIFY(WM_Exec() == 1 && display.dots[11][11] == 1);
        createMeter(0); // the next start deletes it
        WM_DeleteWindow(meter);
        QVERIFY(!WM_IsWindow(meter) && WM_CreateWidget(0, 0, 9, 9, 0, 0, 1, nullptr, nullptr) == 0);
    }
};

static const RegisteredTest<TestMeter> registered;
#include "testmeter.moc"
