#include "testdisplay.h"
#include "testregistry.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <vector>

namespace
{
/// The seed of a window's picture: a chequer of four fields that meet at a place of its own, each dot drawn
/// once.
std::map<WM_Handle, int> seeds;

bool isSeedDot(int seed, int x, int y)
{
    return (x > seed % 13) != (y > seed % 7);
}

void paintSeed(WM_Message &message)
{
    if (message.id != WM_PAINT) {
        WM_DefaultProc(message);
        return;
    }
    constexpr int Far = 20000;
    const int x = seeds[message.window] % 13;
    const int y = seeds[message.window] % 7;
    GUI_ClearRect({0, 0, x, y});
    GUI_FillRect({x + 1, 0, Far, y});
    GUI_FillRect({0, y + 1, x, Far});
    GUI_ClearRect({x + 1, y + 1, Far, Far});
}

/// The window tree as a naive painter sees it.
// NOLINTNEXTLINE(misc-no-recursion)
struct Node {
    WM_Handle handle;
    int x, y, width, height;
    int inset; ///< of its client area; a title bar is not there
    bool shown;
    std::vector<Node> children;

    /// Paints one dot, `(x, y)` on the parent's client area, as far as this node covers it.
    // NOLINTNEXTLINE(misc-no-recursion)
    void paint(int px, int py, bool &lit) const
    {
        const int dx = px - x;
        const int dy = py - y;
        if (!shown || !isWithin({0, 0, width - 1, height - 1}, dx, dy)) {
            return;
        }
        lit = handle != 0 && isSeedDot(seeds[handle], dx, dy);
        for (const Node &child : children) {
            if (isWithin({inset, inset, width - 1 - inset, height - 1 - inset}, dx, dy)) {
                child.paint(dx - inset, dy - inset, lit);
            }
        }
    }
};

std::mt19937 generator;

int pick(int first, int last)
{
    return first + int(generator() % unsigned(last - first + 1));
}

/// A random descendant and its parent; null when there is none.
Node *pickNode(Node &root, Node *&parent)
{
    Node *node = nullptr;
    for (Node *at = &root; !at->children.empty() && (node == nullptr || pick(0, 1) == 0);) {
        parent = at;
        node = at = &at->children[size_t(pick(0, int(at->children.size()) - 1))];
    }
    return node;
}

void create(Node &parent)
{
    Node node{0, pick(-20, 110), pick(-20, 60), pick(-1, 50), pick(-1, 40), 0, pick(0, 4) > 0, {}};
    if (parent.handle == 0 && pick(0, 1) == 0) {
        node.inset = pick(0, 4);
        node.handle = FRAMEWIN_Create("", paintSeed, WM_HIDDEN, node.x, node.y, node.width, node.height);
        FRAMEWIN_SetTitleVis(node.handle, 0);
        FRAMEWIN_SetBorderSize(node.handle, node.inset);
    } else {
        node.handle =
            WM_CreateWindow(node.x, node.y, node.width, node.height, parent.handle, WM_HIDDEN, paintSeed);
    }
    if (node.shown) {
        WM_ShowWindow(node.handle);
    }
    seeds[node.handle] = pick(0, 90);
    parent.children.push_back(node);
}

/// One random change to the library's windows and to the naive tree.
void change(Node &root)
{
    Node *parent = nullptr;
    Node *const node = pickNode(root, parent);
    const int what = std::max(0, pick(-2, 8));
    if (node == nullptr || (what == 0 && parent->children.size() < 6)) {
        create(node != nullptr && pick(0, 1) == 0 ? *node : root);
        return;
    }
    auto &siblings = parent->children;
    const auto at = siblings.begin() + (node - siblings.data());
    const WM_Handle handle = node->handle;
    switch (what) {
    case 1:
        WM_MoveTo(handle, node->x = pick(-20, 110), node->y = pick(-20, 60));
        return;
    case 2:
        WM_MoveBy(handle, 3, -2);
        node->x += 3;
        node->y -= 2;
        return;
    case 3:
        WM_SetSize(handle, node->width = pick(0, 60), node->height = pick(0, 60));
        return;
    case 4:
        node->shown = !node->shown;
        (node->shown ? WM_ShowWindow : WM_HideWindow)(handle);
        return;
    case 5:
        WM_BringToTop(handle);
        std::rotate(at, at + 1, siblings.end());
        return;
    case 6:
        WM_BringToBottom(handle);
        std::rotate(siblings.begin(), at, at + 1);
        return;
    case 7:
        seeds[handle] = pick(0, 90);
        WM_InvalidateWindow(handle);
        return;
    default:
        WM_DeleteWindow(handle);
        siblings.erase(at);
    }
}

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

/// What a callback does when a message of one kind arrives, once.
int trigger = 0;
void (*react)(WM_Handle window) = nullptr;

void reacting(WM_Message &message)
{
    if (message.id == trigger) {
        trigger = 0;
        react(message.window);
    }
    WM_DefaultProc(message);
}

/// Whenever it is painted, it has a child of its kind and is invalid again.
int bred = 0;

void breed(WM_Message &message)
{
    if (message.id == WM_PAINT) {
        ++bred;
        WM_CreateWindow(0, 0, 9, 9, message.window, WM_VISIBLE, breed);
        WM_InvalidateWindow(message.window);
        QCOMPARE(WM_Exec(), 0);
    }
    WM_DefaultProc(message);
}

GUI_Rect extent(int x, int y, int width, int height)
{
    return {x, y, x + width - 1, y + height - 1};
}

WM_Handle window(int x, int y, int width, int height, WM_Handle parent = 0, int flags = WM_VISIBLE)
{
    const WM_Handle handle = WM_CreateWindow(x, y, width, height, parent, flags, paintSeed);
    seeds[handle] = 3;
    return handle;
}
} // namespace

class TestWindows : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        start();
        seeds.clear();
        heard.clear();
    }

    void anyChangesShowAsPaintedNaively()
    {
        generator.seed(20240229);
        Node root{0, 0, 0, LCD_XSIZE, LCD_YSIZE, 0, true, {}};
        for (int round = 0; round < 2000; ++round) {
            for (int changes = pick(1, 3); changes > 0; --changes) {
                change(root);
            }
            paintAnew();
            COMPARE_DOTS(display.dots, dotsWhere([&root](int x, int y) {
                             bool lit = false;
                             root.paint(x, y, lit);
                             return lit;
                         }));
            QVERIFY(display.mostPaints() <= 1);
            QCOMPARE(display.outside, 0);
            paintAnew();
            QVERIFY(!display.isDamaged());
        }
    }

    void onlyWhatChangesIsPainted()
    {
        const WM_Handle low = window(10, 10, 40, 30);
        const WM_Handle child = window(30, 20, 10, 10, low);
        const WM_Handle high = window(45, 35, 20, 20);
        const WM_Handle hidden = window(0, 0, 100, 60, 0, WM_HIDDEN);
        const struct {
            std::function<void()> act;
            GUI_Rect damage;
        } steps[] = {
            {[&] { WM_InvalidateWindow(hidden); }, extent(0, 0, 0, 0)},
            {[&] { WM_BringToTop(high); }, extent(0, 0, 0, 0)},
            {[&] { WM_BringToTop(low); }, extent(45, 35, 5, 5)},
            {[&] { WM_BringToTop(low); }, extent(0, 0, 0, 0)},
            {[&] { WM_BringToBottom(low); }, extent(45, 35, 5, 5)},
            {[&] {
                 WM_InvalidateRect(low, {-5, 2, 3, 4});
             },
             extent(10, 12, 4, 3)},
            {[&] { WM_InvalidateWindow(child); }, extent(40, 30, 10, 10)},
            {[&] { WM_MoveBy(child, 0, 0); }, extent(0, 0, 0, 0)},
            {[&] { WM_HideWindow(high); }, extent(45, 35, 20, 20)},
            {[&] { WM_MoveTo(child, 32, 20); }, extent(40, 30, 10, 10)},
            {[&] { WM_SetSize(child, 4, 4); }, extent(42, 30, 8, 10)},
            {[&] { WM_DeleteWindow(child); }, extent(42, 30, 4, 4)},
            {[&] { WM_SetDesktopColor(0xEEEEEE); }, extent(0, 0, 0, 0)},
            {[&] { WM_SetDesktopColor(GUI_BLACK); }, extent(0, 0, 128, 64)},
        };
        WM_Exec();
        for (const auto &step : steps) {
            step.act();
            paintAnew();
            QVERIFY(std::memcmp(&display.damage, &step.damage, sizeof(GUI_Rect)) == 0);
            COMPARE_REPAINTED();
        }
    }

    void emptyFarAndHugeWindowsAreFine()
    {
        constexpr int Far = std::numeric_limits<int>::max();
        WM_Handle deep = 0;
        for (int i = 0; i < 50; ++i) {
            deep = window(Far, -Far, Far, Far, deep);
        }
        const WM_Handle huge = window(-5, -5, Far, Far);
        QCOMPARE(WM_GetWindowRect(window(5, 5, -Far, -3, huge)).x1, -1);
        WM_MoveBy(deep, Far, Far);
        WM_MoveTo(huge, -3, -100);
        WM_InvalidateRect(huge, {-Far - 1, -Far - 1, Far, Far});
        paintAnew();
        COMPARE_DOTS(display.dots, dotsWhere([](int x, int) { return x <= 0; }));
        QCOMPARE(WM_GetWindowRect(huge).x1, -3 + 16383 - 1);
        std::vector<WM_Handle> all;
        while (const WM_Handle more = window(0, 0, 1, 1)) {
            all.push_back(more);
        }
        QVERIFY(all.size() > 4000);
    }

    void deletedWindowsStayDead()
    {
        const WM_Handle parent = window(0, 0, 50, 50);
        const WM_Handle child = BUTTON_CreateEx(1, 1, 30, 10, parent, WM_VISIBLE, 7);
        QCOMPARE(WM_GetDialogItem(0, 7), 0);
        QCOMPARE(WM_GetDialogItem(WM_GetDesktopWindow(), 7), child);
        WM_SetFocus(child);
        WM_DeleteWindow(parent);
        QVERIFY(WM_GetFocus() == 0 && GUI_SendKeyMsg('a', 1) == 0);
        const WM_Handle below = WM_GetParent(window(0, 0, 9, 9, window(60, 0, 9, 9)));
        const WM_Handle next = BUTTON_CreateEx(1, 1, 30, 10, window(0, 0, 50, 50), WM_VISIBLE, 8);
        QCOMPARE(WM_GetDialogItem(below, 8), 0);
        QCOMPARE(WM_GetDialogItem(WM_GetParent(below), 8), next);
        paintAnew();
        display.forget();
        for (const WM_Handle dead : {parent, child, 0, -1, std::numeric_limits<int>::max()}) {
            BUTTON_SetText(dead, "dead");
            EDIT_AddKey(dead, 'a');
            FRAMEWIN_SetBorderSize(dead, 3);
            WM_MoveTo(dead, 9, 9);
            WM_DeleteWindow(dead);
            WM_InvalidateWindow(dead);
            WM_SetFocus(dead);
            char text[4] = "xyz";
            QCOMPARE(BUTTON_GetText(dead, text, sizeof text), 0);
            QCOMPARE(text, "");
            QVERIFY(!WM_IsWindow(dead) && !WM_IsVisible(dead) && WM_GetParent(dead) == 0);
            QVERIFY(dead == 0 || WM_CreateWindow(0, 0, 5, 5, dead, WM_VISIBLE, nullptr) == 0);
        }
        TEXT_SetText(next, "no text widget");
        WM_DeleteWindow(WM_GetDesktopWindow());
        WM_HideWindow(WM_GetDesktopWindow());
        WM_Exec();
        QVERIFY(!display.isDamaged() && WM_IsVisible(next) && WM_GetFocus() == 0);
        start();
        QVERIFY(!WM_IsWindow(next));
    }

    void callbacksMayChangeTheTree()
    {
        void (*const reactions[])(WM_Handle) = {
            [](WM_Handle window) { WM_DeleteWindow(window); },
            [](WM_Handle window) { WM_DeleteWindow(WM_GetParent(window)); },
            [](WM_Handle) { WM_DeleteWindow(WM_GetDialogItem(0, 1)); },
            [](WM_Handle) { WM_DeleteWindow(WM_GetDialogItem(WM_GetDesktopWindow(), 1)); },
            [](WM_Handle) { WM_DeleteWindow(WM_GetDialogItem(WM_GetDesktopWindow(), 2)); },
            [](WM_Handle) { WM_DeleteWindow(WM_GetDialogItem(WM_GetDesktopWindow(), 3)); },
            [](WM_Handle window) { TEXT_CreateEx(0, 0, 30, 20, window, WM_VISIBLE, 9, "new"); },
            [](WM_Handle window) { WM_MoveBy(window, 5, 5); },
            [](WM_Handle window) {
                WM_BringToTop(window), WM_HideWindow(WM_GetParent(window)), WM_SetFocus(0);
            },
            [](WM_Handle window) { WM_InvalidateWindow(window), WM_Exec(), GUI_Delay(30); },
            [](WM_Handle) { QCOMPARE(GUI_Init(), 0); },
        };
        for (const int id : {WM_PAINT, WM_KEY, WM_SET_FOCUS, WM_KILL_FOCUS, WM_NOTIFY_PARENT, WM_DELETE}) {
            for (const auto reaction : reactions) {
                start();
                const WM_Handle frame = FRAMEWIN_Create("frame", reacting, WM_VISIBLE, 5, 5, 100, 50);
                const WM_Handle button = BUTTON_CreateEx(5, 5, 60, 20, frame, WM_VISIBLE, 1);
                TEXT_CreateEx(0, 0, 99, 9, frame, WM_HIDDEN, 3, "hidden");
                const WM_Handle edit = EDIT_CreateEx(20, 10, 60, 20, frame, WM_VISIBLE, 2, 9);
                WM_SetCallback(button, reacting);
                WM_SetCallback(edit, reacting);
                react = reaction;
                trigger = id;
                WM_Exec();
                WM_SetFocus(button);
                GUI_SendKeyMsg(' ', 1);
                WM_SetFocus(edit);
                GUI_SendKeyMsg('a', 1);
                WM_Exec();
                COMPARE_REPAINTED();
                WM_DeleteWindow(button);
                WM_DeleteWindow(frame);
                QCOMPARE(trigger, 0);
                WM_Exec();
                COMPARE_REPAINTED();
            }
        }
    }

    void paintingThatInvalidatesEnds()
    {
        const WM_Handle frame = FRAMEWIN_Create("", breed, WM_VISIBLE, 0, 0, 60, 60);
        const WM_Handle other = window(70, 10, 20, 20);
        bred = 0;
        QCOMPARE(WM_Exec(), 1);
        QCOMPARE(bred, 1);
        QCOMPARE(int(display.paints[15][75]), 1);
        QCOMPARE(WM_Exec(), 1);
        WM_DeleteWindow(frame);
        QCOMPARE(WM_Exec(), 1);
        QCOMPARE(WM_Exec(), 0);
        window(60, 0, 60, 60);
        QCOMPARE(WM_Exec(), 1);
        WM_InvalidateWindow(other);
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
        const std::vector<QByteArray> expected = {"1:3 0",  "1:2 13+",  "0:5 1", "1:2 13+", "1:2 13",
                                                  "0:5 2",  "1:4 0",    "2:3 0", "2:2 97+", "0:5 3",
                                                  "2:2 97", "2:2 272+", "1:6 0", "2:6 0",   "0:6 0"};
        QCOMPARE(heard, expected);
    }

    void focusMayMoveOnWhileItMoves()
    {
        const WM_Handle left = WM_CreateWindow(0, 0, 9, 9, 0, WM_VISIBLE, reacting);
        const WM_Handle passed = WM_CreateWindow(9, 0, 9, 9, 0, WM_VISIBLE, listen);
        WM_SetFocus(left);
        trigger = WM_KILL_FOCUS;
        react = [](WM_Handle) { WM_SetFocus(0); };
        WM_SetFocus(passed);
        QVERIFY(WM_GetFocus() == 0 && std::count(heard.begin(), heard.end(), "0:3 0") == 0);
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

    void startAndDelayFollowThePort()
    {
        window(0, 0, 10, 10);
        display.now = 0xFFFFFFF0U;
        GUI_Delay(50);
        QCOMPARE(GUI_GetTime(), 34U);
        QVERIFY(display.isDamaged());
        display.initError = 4;
        QCOMPARE(GUI_Init(), 4);
    }
};

static const RegisteredTest<TestWindows> registered;
#include "testwindows.moc"
