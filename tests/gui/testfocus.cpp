#include "testdisplay.h"
#include "testregistry.h"

#include <utility>

using Action = void (*)(WM_Handle window);
Q_DECLARE_METATYPE(Action)

namespace
{
QByteArrayList heard;
/// What the first window that loses the focus does then.
Action react = nullptr;

void listen(WM_Message &message)
{
    if (message.id == WM_SET_FOCUS || message.id == WM_KILL_FOCUS) {
        heard += (message.id == WM_SET_FOCUS ? '+' : '-') + QByteArray::number(WM_GetId(message.window));
    }
    WM_DefaultProc(message);
    if (const Action action = message.id == WM_KILL_FOCUS ? std::exchange(react, nullptr) : nullptr) {
        action(message.window);
    }
}

WM_Handle item(int id)
{
    return WM_GetDialogItem(WM_GetDesktopWindow(), id);
}

WM_Handle plain(int id, int flags)
{
    const WM_Handle window = WM_CreateWindow(0, 0, 9, 9, 0, WM_VISIBLE | flags, nullptr);
    WM_SetId(window, id);
    return window;
}

/// Window 1 has the button 11, the text 12, the edit field 13 and the button 14; window 2 the edit field 21;
/// window 3, which takes keys as well, the button 31.
void build()
{
    const WM_Handle first = plain(1, 0);
    BUTTON_CreateEx(0, 0, 9, 9, first, WM_VISIBLE, 11);
    TEXT_CreateEx(0, 0, 9, 9, first, WM_VISIBLE, 12, "");
    EDIT_CreateEx(0, 0, 9, 9, first, WM_VISIBLE, 13, 4);
    BUTTON_CreateEx(0, 0, 9, 9, first, WM_VISIBLE, 14);
    EDIT_CreateEx(0, 0, 9, 9, plain(2, 0), WM_VISIBLE, 21, 4);
    BUTTON_CreateEx(0, 0, 9, 9, plain(3, WM_TAKES_KEYS), WM_VISIBLE, 31);
    for (const int id : {1, 11, 12, 13, 14, 2, 21, 3, 31}) {
        WM_SetCallback(item(id), listen);
    }
}
} // namespace

class TestFocus : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        start();
        build();
        heard.clear();
        react = nullptr;
    }

    void focusIsHandedOn_data()
    {
        QTest::addColumn<int>("focus");
        QTest::addColumn<QVector<int>>("others"); ///< hidden, disabled, hidden, and so on
        QTest::addColumn<int>("gone");
        QTest::addColumn<int>("heir");
        using Ids = QVector<int>;
        QTest::newRow("to the next that takes keys") << 11 << Ids{} << 11 << 13;
        QTest::newRow("past hidden and disabled ones") << 11 << Ids{13, 14} << 11 << 21;
        QTest::newRow("round to the first") << 14 << Ids{} << 14 << 11;
        QTest::newRow("to the parent") << 31 << Ids{} << 31 << 3;
        QTest::newRow("out of a window") << 13 << Ids{} << 1 << 21;
        QTest::newRow("round among windows") << 31 << Ids{} << 3 << 11;
        QTest::newRow("past windows that are hidden or disabled") << 13 << Ids{2, 3} << 1 << 0;
        QTest::newRow("not while its own window stays") << 11 << Ids{} << 13 << 11;
    }

    void focusIsHandedOn()
    {
        QFETCH(const int, focus);
        QFETCH(const QVector<int>, others);
        QFETCH(const int, gone);
        QFETCH(const int, heir);
        for (const Action act : {WM_HideWindow, WM_DisableWindow, WM_DeleteWindow}) {
            init();
            for (int i = 0; i < others.size(); ++i) {
                (i % 2 == 0 ? WM_HideWindow : WM_DisableWindow)(item(others[i]));
            }
            WM_SetFocus(item(focus));
            heard.clear();
            act(item(gone));
            QCOMPARE(WM_GetId(WM_GetFocus()), heir);
            QByteArrayList expected;
            if (heir != focus) {
                expected += '-' + QByteArray::number(focus);
            }
            if (heir != focus && heir != 0) {
                expected += '+' + QByteArray::number(heir);
            }
            QCOMPARE(heard, expected);
            COMPARE_REPAINTED();
        }
    }

    void whoLosesItMayActAsWell_data()
    {
        QTest::addColumn<Action>("reaction");
        QTest::addColumn<QByteArrayList>("messages");
        const Action deleteHeir = [](WM_Handle) { WM_DeleteWindow(item(13)); };
        const Action deleteItself = [](WM_Handle window) { WM_DeleteWindow(window); };
        const Action deleteAll = [](WM_Handle window) { WM_DeleteWindow(WM_GetParent(window)); };
        const Action takeBack = [](WM_Handle window) { WM_SetFocus(window); };
        const Action show = [](WM_Handle window) { WM_ShowWindow(window), WM_SetFocus(window); };
        QTest::newRow("deletes the heir") << deleteHeir << QByteArrayList{"-11", "+14"};
        QTest::newRow("deletes itself") << deleteItself << QByteArrayList{"-11", "+13"};
        QTest::newRow("deletes its parent") << deleteAll << QByteArrayList{"-11", "+21"};
        QTest::newRow("wants it back") << takeBack << QByteArrayList{"-11", "+13"};
        QTest::newRow("starts anew") << Action([](WM_Handle) { GUI_Init(); }) << QByteArrayList{"-11"};
        QTest::newRow("shows itself again") << show << QByteArrayList{"-11", "+11"};
    }

    void whoLosesItMayActAsWell()
    {
        QFETCH(const Action, reaction);
        QFETCH(const QByteArrayList, messages);
        for (const Action act : {WM_HideWindow, WM_DeleteWindow}) {
            init();
            WM_SetFocus(item(11));
            heard.clear();
            react = reaction;
            act(item(11));
            QCOMPARE(heard, messages);
            COMPARE_REPAINTED();
        }
    }

    void onlyVisibleAndEnabledWindowsGetIt()
    {
        WM_DisableWindow(item(1));
        WM_HideWindow(item(3));
        WM_SetFocus(item(21));
        for (const int id : {1, 11, 3, 31}) {
            WM_SetFocus(item(id));
            QCOMPARE(WM_GetId(WM_GetFocus()), 21);
        }
        QVERIFY(!WM_IsEnabled(item(11)) && WM_IsEnabled(item(31)) && !WM_IsEnabled(0));
        WM_EnableWindow(item(1));
        WM_SetFocus(item(11));
        GUI_SendKeyMsg(' ', 1);
        QVERIFY(WM_IsEnabled(item(11)) && BUTTON_IsPressed(item(11)));
        WM_DisableWindow(item(1));
        GUI_SendKeyMsg('a', 1);
        char text[4];
        QVERIFY(!BUTTON_IsPressed(item(11)) && EDIT_GetText(item(21), text, sizeof text) == 1);
    }
};

static const RegisteredTest<TestFocus> registered;
#include "testfocus.moc"
