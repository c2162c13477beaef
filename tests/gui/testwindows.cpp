#include "testdisplay.h"
#include "testregistry.h"

#include <functional>
#include <limits>
#include <vector>

namespace
{
std::vector<QByteArray> heard;

void listen(WM_Message &message)
{
    if (message.id != WM_PAINT) {
        heard.push_back(QByteArray::number(WM_GetId(message.window)) + ':' + QByteArray::number(message.id) +
                        ' ' + QByteArray::number(message.id == WM_KEY ? message.key : int(message.value)) +
                        (message.pressed != 0 ? "+" : ""));
    }
    if (message.id == WM_DELETE) {
        QCOMPARE(WM_CreateWindow(0, 0, 9, 9, message.window, WM_VISIBLE, nullptr), 0);
    }
    WM_DefaultProc(message);
}

/// Whenever it is painted, it has a child of its kind and is invalid again.
void breed(WM_Message &message)
{
    if (message.id == WM_PAINT) {
        WM_CreateWindow(0, 0, 9, 9, message.window, WM_VISIBLE, breed);
        WM_InvalidateWindow(message.window);
        QCOMPARE(WM_Exec(), 0);
    }
    WM_DefaultProc(message);
}

WM_Handle window(int x, int y, int width, int height, WM_Handle parent = 0, int flags = WM_VISIBLE)
{
    return TEXT_CreateEx(x, y, width, height, parent, flags, 1, "");
}
} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        start();
        heard.clear();
    }

    void onlyWhatChangesIsPainted()
    {
        const WM_Handle low = window(10, 10, 40, 30);
        const WM_Handle child = window(30, 20, 10, 10, low);
        const WM_Handle high = window(45, 35, 20, 20);
        const WM_Handle hidden = window(0, 0, 100, 60, 0, WM_HIDDEN);
        const GUI_Rect part = {-5, 2, 3, 4};
        const struct {
            std::function<void()> act;
            QRect damage;
        } steps[] = {
            {[&] { WM_InvalidateWindow(hidden); }, QRect()},
            {[&] { WM_BringToTop(high); }, QRect()},
            {[&] { WM_BringToTop(low); }, QRect(45, 35, 5, 5)},
            {[&] { WM_BringToTop(low); }, QRect()},
            {[&] { WM_BringToBottom(low); }, QRect(45, 35, 5, 5)},
            {[&] { WM_InvalidateRect(low, part); }, QRect(10, 12, 4, 3)},
            {[&] { WM_InvalidateWindow(child); }, QRect(40, 30, 10, 10)},
            {[&] { WM_MoveTo(child, 30, 20); }, QRect()},
            {[&] { WM_HideWindow(high); }, QRect(45, 35, 20, 20)},
            {[&] { WM_MoveBy(child, 2, 0); }, QRect(40, 30, 10, 10)},
            {[&] { WM_SetSize(child, 4, 4); }, QRect(42, 30, 8, 10)},
            {[&] { WM_DeleteWindow(child); }, QRect(42, 30, 4, 4)},
            {[&] { WM_SetDesktopColor(0xEEEEEE); }, QRect()},
            {[&] { WM_SetDesktopColor(GUI_BLACK); }, QRect(0, 0, 128, 64)},
        };
        WM_Exec();
        for (const auto &step : steps) {
            step.act();
            paintAnew();
            QCOMPARE(display.damage, step.damage);
        }
    }

    void hugeAndVeryManyWindowsAreFine()
    {
        constexpr int Far = std::numeric_limits<int>::max();
        const WM_Handle huge = window(-5, -5, Far, Far);
        QCOMPARE(WM_GetWindowRect(window(5, 5, -Far, -3, huge)).x1, -1);
        WM_MoveTo(huge, -3, -100);
        QCOMPARE(WM_GetWindowRect(huge).x1, -3 + 16383 - 1);
        int count = 3; // with the desktop
        while (window(0, 0, 1, 1) != 0) {
            ++count;
        }
        QCOMPARE(count, 4095);
    }

    void deletedWindowsStayDead()
    {
        const WM_Handle parent = window(0, 0, 50, 50);
        const WM_Handle child = BUTTON_CreateEx(1, 1, 30, 10, parent, WM_VISIBLE, 7);
        QVERIFY(WM_GetDialogItem(0, 7) == 0 && WM_GetDialogItem(WM_GetDesktopWindow(), 7) == child);
        WM_SetFocus(child);
        WM_DeleteWindow(parent);
        QVERIFY(WM_GetFocus() == 0 && GUI_SendKeyMsg('a', 1) == 0);
        const WM_Handle next = BUTTON_CreateEx(1, 1, 30, 10, window(0, 0, 50, 50), WM_VISIBLE, 8);
        paintAnew();
        display.forget();
        for (const WM_Handle dead : {parent, child, 0, -1, std::numeric_limits<int>::max()}) {
            BUTTON_SetText(dead, "dead");
            WM_MoveTo(dead, 9, 9);
            WM_DeleteWindow(dead);
            WM_SetFocus(dead);
            char text[4] = "xyz";
            QVERIFY(BUTTON_GetText(dead, text, sizeof text) == 0 && text[0] == '\0');
            QVERIFY(!WM_IsWindow(dead) && !WM_IsVisible(dead) && WM_GetParent(dead) == 0);
            QVERIFY(dead == 0 || WM_CreateWindow(0, 0, 5, 5, dead, WM_VISIBLE, nullptr) == 0);
        }
        TEXT_SetText(next, "no text widget");
        WM_DeleteWindow(WM_GetDesktopWindow());
        WM_HideWindow(WM_GetDesktopWindow());
        WM_Exec();
        QVERIFY(!display.isDamaged() && WM_IsVisible(next) && WM_GetFocus() == 0);
    }

    /// What is invalid again after its turn waits for the next round.
    void paintingThatInvalidatesEnds()
    {
        const WM_Handle frame = WM_CreateWindow(0, 0, 60, 60, 0, WM_VISIBLE, breed);
        QCOMPARE(WM_Exec(), 1);
        QCOMPARE(WM_Exec(), 1);
        WM_DeleteWindow(frame);
        QCOMPARE(WM_Exec(), 1);
        QCOMPARE(WM_Exec(), 0);
    }

    void messagesArriveInOrder()
    {
        const WM_Handle frame = FRAMEWIN_Create("", listen, WM_VISIBLE, 0, 0, 100, 60);
        const WM_Handle button = BUTTON_CreateEx(0, 0, 20, 20, frame, WM_VISIBLE, 1);
        const WM_Handle edit = EDIT_CreateEx(0, 30, 20, 20, frame, WM_VISIBLE, 2, 9);
        WM_SetCallback(button, listen);
        WM_SetCallback(edit, listen);
        QCOMPARE(GUI_SendKeyMsg('a', 1), 0);
        WM_SetFocus(button);
        QCOMPARE(GUI_SendKeyMsg(GUI_KEY_ENTER, 1), 1);
        GUI_SendKeyMsg(GUI_KEY_ENTER, 1);
        GUI_SendKeyMsg(GUI_KEY_ENTER, 0);
        WM_SetFocus(edit);
        WM_SetFocus(edit);
        GUI_SendKeyMsg('a', 1);
        GUI_SendKeyMsg('a', 0);
        GUI_SendKeyMsg(GUI_KEY_LEFT, 1);
        WM_DeleteWindow(frame);
        const std::vector<QByteArray> expected = {
            "1:3 0",   "1:2 13+", "0:5 1",  "1:2 13+",  "1:2 13", "0:5 2", "1:4 0", "2:3 0",
            "2:2 97+", "0:5 3",   "2:2 97", "2:2 272+", "2:4 0",  "1:6 0", "2:6 0", "0:6 0"};
        QCOMPARE(heard, expected);
    }

    void drawingGoesOnAsBeforeAfterPainting()
    {
        window(5, 5, 10, 10);
        GUI_SetColor(0x123456);
        WM_Exec();
        QCOMPARE(GUI_GetColor(), 0x123456U);
        GUI_FillRect({0, 0, 99, 63});
        COMPARE_DOTS(display.dots, dotsWhere([](int x, int) { return x < 100; }));
    }

    void startFollowsThePort()
    {
        start(200, 40);
        TEXT_CreateEx(176, 32, 24, 8, 0, WM_VISIBLE, 1, "Last");
        COMPARE_PAINTED(isTextDot("Last", 176, 32, x, y));
        start(-1, std::numeric_limits<int>::max());
        QVERIFY(LCD_GetXSize() == 0 && LCD_GetYSize() == 16383 && display.outside == 0);
        display.initError = 4;
        QCOMPARE(GUI_Init(), 4);
        GUI_Clear();
        QVERIFY(LCD_GetYSize() == 0 && !display.isDamaged());
    }

    void delaysPaint()
    {
        window(0, 0, 10, 10);
        display.now = 0xFFFFFFF0U;
        GUI_Delay(50);
        QVERIFY(GUI_GetTime() == 34 && display.isDamaged());
    }
};

static const RegisteredTest<TestWindows> registered;
#include "testwindows.moc"
