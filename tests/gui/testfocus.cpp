#include "rows.h"
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

/// From back to front: window 1 with the text 10, the buttons 11 and 12 and the edit field 13; window 2 with
/// the edit field 21; window 3, which takes keys as well, with the button 31.
void build()
{
    start();
    for (const int id : {1, 2, 3}) {
        const int flags = id == 3 ? WM_VISIBLE | WM_TAKES_KEYS : WM_VISIBLE;
        WM_SetId(WM_CreateWindow(0, 0, 9, 9, 0, flags, listen), id);
    }
    TEXT_CreateEx(0, 0, 9, 9, item(1), WM_VISIBLE, 10, "");
    for (const int id : {11, 12, 31}) {
        WM_SetCallback(BUTTON_CreateEx(0, 0, 9, 9, item(id / 10), WM_VISIBLE, id), listen);
    }
    for (const int id : {13, 21}) {
        WM_SetCallback(EDIT_CreateEx(0, 0, 9, 9, item(id / 10), WM_VISIBLE, id, 4), listen);
    }
}
} // namespace

class TestFocus : public QObject
{
    Q_OBJECT

private slots:
    void focusIsHandedOn_data()
    {
        columns<int, QVector<int>, Action, QByteArray>("focus", "gone", "reaction", "told");
        // The windows in `gone` go one after the other.
        const auto row = [](const char *name, int focus, const QVector<int> &gone, const char *told,
                            Action reaction = nullptr) {
            QTest::newRow(name) << focus << gone << reaction << QByteArray(told);
        };
        row("to the next, at last to none", 11, {11, 12, 13, 21, 3}, "-11+12-12+13-13+21-21+3-3");
        row("round to the first that takes keys", 13, {13}, "-13+11");
        row("to the parent", 31, {31}, "-31+3");
        row("out of a window", 12, {1}, "-12+21");
        row("round among windows", 31, {3}, "-31+11");
        row("not while its own window stays", 11, {12, 10, 2}, "");
        row("heir deleted", 11, {11}, "-11+13", [](WM_Handle) { WM_DeleteWindow(item(12)); });
        row("loser deleted", 11, {11}, "-11+12", [](WM_Handle window) { WM_DeleteWindow(window); });
        row("parent deleted", 11, {11}, "-11+21", [](WM_Handle) { WM_DeleteWindow(item(1)); });
        row("started anew", 11, {11}, "-11", [](WM_Handle) { GUI_Init(); });
        row("wanted back", 11, {11}, "-11+12", [](WM_Handle window) { WM_SetFocus(window); });
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
            const WM_Handle last = item(gone.last());
            QVERIFY(WM_IsEnabled(last) == int(last != 0 && act != WM_DisableWindow));
            WM_ShowWindow(last), WM_EnableWindow(last), WM_SetFocus(last);
            QCOMPARE(WM_GetFocus(), last);
        }
    }
};

static const RegisteredTest<TestFocus> registered;
#include "testfocus.moc"
