#include "testdisplay.h"
#include "testregistry.h"

#include <algorithm>
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
    const int what = std::max(0, pick(-2, 7));
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
        WM_SetSize(handle, node->width = pick(0, 60), node->height = pick(0, 60));
        return;
    case 3:
        node->shown = !node->shown;
        (node->shown ? WM_ShowWindow : WM_HideWindow)(handle);
        return;
    case 4:
        WM_BringToTop(handle);
        std::rotate(at, at + 1, siblings.end());
        return;
    case 5:
        WM_BringToBottom(handle);
        std::rotate(siblings.begin(), at, at + 1);
        return;
    case 6:
        seeds[handle] = pick(0, 90);
        WM_InvalidateWindow(handle);
        return;
    default:
        WM_DeleteWindow(handle);
        siblings.erase(at);
    }
}
} // namespace

/// Random changes to the window tree, beside a painter that knows no invalidation.
class TestWindowTree : public QObject
{
    Q_OBJECT

private slots:
    void anyChangesShowAsPaintedNaively()
    {
        start(150, 50);
        generator.seed(20240229);
        Node root{0, 0, 0, LCD_GetXSize(), LCD_GetYSize(), 0, true, {}};
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
            QVERIFY(display.mostPaints <= 1);
            QCOMPARE(display.outside, 0);
            paintAnew();
            QVERIFY(!display.isDamaged());
        }
    }
};

static const RegisteredTest<TestWindowTree> registered;

#include "testwindowtree.moc"
