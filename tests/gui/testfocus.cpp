#include "testdisplay.h"
#include "testregistry.h"

#include <utility>

using Action = void (*)(WM_Handle window);
Q_DECLARE_METATYPE(Action)

namespace
{
QByteArray heard;
/// What the first window that loses the focus does then.
Action react = nullptr;

void listen(WM_Message &message)
{
    WM_DefaultProc(message);
    if (message.id == WM_SET_FOCUS || message.id == WM_KILL_FOCUS) {
        heard += (message.id == WM_SET_FOCUS ? '+' : '-') + QByteArray::number(WM_GetId(message.window));
    }
    if (const Action action = message.id == WM_KILL_FOCUS ? std::exchange(react, nullptr) : nullptr) {
        action(message.window);
    }
}

WM_Handle item(int id)
{
    return WM_GetDialogItem(WM_GetDesktopWindow(), id);
}

void plain(int id, int flags)
{
    WM_SetId(WM_CreateWindow(0, 0, 9, 9, 0, WM_VISIBLE | flags, nullptr), id);
}

/// Window 1 has the button 11, the text 12, the edit field 13 and the button 14; window 2 the edit field 21;
/// window 3, which takes keys as well, the button 31.
void build()
{
    start();
    plain(1, 0);
    plain(2, 0);
    plain(3, WM_TAKES_KEYS);
    BUTTON_CreateEx(0, 0, 9, 9, item(1), WM_VISIBLE, 11);
    TEXT_CreateEx(0, 0, 9, 9, item(1), WM_VISIBLE, 12, "");
    EDIT_CreateEx(0, 0, 9, 9, item(1), WM_VISIBLE, 13, 4);
    BUTTON_CreateEx(0, 0, 9, 9, item(1), WM_VISIBLE, 14);
    EDIT_CreateEx(0, 0, 9, 9, item(2), WM_VISIBLE, 21, 4);
    BUTTON_CreateEx(0, 0, 9, 9, item(3), WM_VISIBLE, 31);
    for (const int id : {11, 12, 13, 14, 21, 3, 31}) {
        WM_SetCallback(item(id), listen);
    }
}
} // namespace

class TestFocus : public QObject
{
    Q_OBJECT

private slots:
    void focusIsHandedOn_data()
    {
        QTest::addColumn<int>("focus");
        QTest::addColumn<QVector<int>>("gone"); ///< one after the other
        QTest::addColumn<Action>("reaction");
        QTest::addColumn<QByteArray>("told");
        const auto row = [](const char *name, int focus, const QVector<int> &gone, const char *told,
                            Action reaction = nullptr) {
            QTest::newRow(name) << focus << gone << reaction << QByteArray(told);
        };
        row("to the next that takes keys, at last to none", 11, {11, 13, 14, 21, 3},
            "-11+13-13+14-14+21-21+3-3");
        row("round to the first", 14, {14}, "-14+11");
        row("to the parent", 31, {31}, "-31+3");
        row("out of a window", 13, {1}, "-13+21");
        row("round among windows", 31, {3}, "-31+11");
        row("not while its own window stays", 11, {13, 12, 2}, "");
        row("heir deleted", 11, {11}, "-11+14", [](WM_Handle) { WM_DeleteWindow(item(13)); });
        row("loser deleted", 11, {11}, "-11+13", [](WM_Handle window) { WM_DeleteWindow(window); });
        row("parent deleted", 11, {11}, "-11+21", [](WM_Handle) { WM_DeleteWindow(item(1)); });
        row("started anew", 11, {11}, "-11", [](WM_Handle) { GUI_Init(); });
        row("wanted back", 11, {11}, "-11+13", [](WM_Handle window) { WM_SetFocus(window); });
        row("taken away", 11, {11}, "-11", [](WM_Handle) { WM_SetFocus(0); });
    }

    void focusIsHandedOn()
    {
        QFETCH(const int, focus);
        QFETCH(const QVector<int>, gone);
        QFETCH(const Action, reaction);
        for (const Action act : {WM_HideWindow, WM_DisableWindow, WM_DeleteWindow}) {
            build();
            WM_SetFocus(item(focus));
            heard.clear();
            react = reaction;
            for (const int id : gone) {
                act(item(id));
            }
            QTEST(heard, "told");
            COMPARE_REPAINTED();
        }
    }

    void onlyVisibleAndEnabledWindowsHaveIt()
    {
        build();
        WM_SetFocus(item(11));
        GUI_SendKeyMsg(' ', 1);
        WM_HideWindow(item(3));
        WM_DisableWindow(item(1));
        GUI_SendKeyMsg('a', 1);
        for (const int id : {1, 11, 3, 31}) {
            WM_SetFocus(item(id));
            QCOMPARE(WM_GetId(WM_GetFocus()), 21);
        }
        QVERIFY(!BUTTON_IsPressed(item(11)) && EDIT_GetText(item(21), nullptr, 0) == 1);
        QVERIFY(!WM_IsEnabled(item(11)) && WM_IsEnabled(item(31)) && !WM_IsEnabled(0));
        WM_EnableWindow(item(1));
        WM_SetFocus(item(11));
        QCOMPARE(WM_GetId(WM_GetFocus()), 11);
    }
};

static const RegisteredTest<TestFocus> registered;
#include "testfocus.moc"
