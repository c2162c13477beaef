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
}
} // namespace

/// What is special about the example of a widget that is written outside of the library; TestWidgets looks at
/// the rest.
class TestMeter : public QObject
{
    Q_OBJECT

private slots:
    void metersAreWidgetsAsAnyOther()
    {
        start();
        const WM_Handle parent = WM_CreateWindow(0, 0, 128, 64, 0, WM_VISIBLE, listen);
        // Two columns for each step, from column 12 to 111.
        const WM_Handle meter = METER_CreateEx(10, 10, 104, 10, parent, WM_VISIBLE, 7, 50);
        METER_SetValue(meter, 13);
        paintAnew();
        display.forget();
        METER_SetValue(meter, 10);
        WM_Exec();
        QVERIFY(display.damage.left() == 32 && display.damage.right() == 37);
        WM_SetFocus(meter);
        for (const int key : {int(GUI_KEY_LEFT), int(GUI_KEY_RIGHT), int(GUI_KEY_RIGHT), int('x')}) {
            GUI_SendKeyMsg(key, 1), GUI_SendKeyMsg(key, 0);
        }
        QVERIFY(METER_GetValue(meter) == 11 && changes == 3 && WM_Exec() == 1);
        METER_SetValue(meter, 11);
        QCOMPARE(WM_Exec(), 0);
        METER_SetValue(meter, 51);
        WM_DisableWindow(meter);
        COMPARE_PAINTED(isWithin({10, 10, 113, 19}, x, y) &&
                        (!isWithin({11, 11, 112, 18}, x, y) || isWithin({12, 12, 111, 17}, x, y)));
        WM_DeleteWindow(meter);
        QVERIFY(METER_GetValue(meter) == 0 && WM_CreateWidget(0, 0, 9, 9, 0, 0, 1, nullptr, nullptr) == 0);
    }
};

static const RegisteredTest<TestMeter> registered;
#include "testmeter.moc"
