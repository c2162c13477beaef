#pragma once

#include "gui.h"

#include <QByteArray>
#include <QRect>
#include <QTest>
#include <array>

/// What the display shows, in its upper left corner if it is smaller; 0 is a black dot.
using Dots = std::array<std::array<unsigned char, 200>, 64>;

/// The display that the tests' port drives. Dots that are drawn outside of it are counted instead.
struct TestDisplay {
    Dots dots{};
    QRect damage;
    int outside = 0;
    int width = 128;
    int height = 64;
    int initError = 0;
    std::uint32_t now = 0;

    /// Damage begins anew.
    void forget() { damage = QRect(); }
    bool isDamaged() const { return !damage.isEmpty(); }
    void put(int x, int y, int index);
};
extern TestDisplay display;

/// Starts the library on a white display.
void start(int width = 128, int height = 64);
/// Paints, and forgets what was damaged before.
void paintAnew();

/// The first dot that differs, empty when none does.
QByteArray difference(const Dots &actual, const Dots &expected);

/// The display by a rule: `lit(x, y)` is true where a dot is to be black.
template <class Rule>
Dots dotsWhere(Rule lit)
{
    Dots dots{};
    for (int y = 0; y < display.height; ++y) {
        for (int x = 0; x < display.width; ++x) {
            dots[y][x] = lit(x, y) ? 0 : 1;
        }
    }
    return dots;
}

bool isWithin(const GUI_Rect &rect, int x, int y);
bool isOnEdge(const GUI_Rect &rect, int x, int y);
/// Whether a text in the small font that begins at a place has a dot at another.
bool isTextDot(const char *text, int textX, int textY, int x, int y);

#define COMPARE_DOTS(actual, expected)                                                                       \
    do {                                                                                                     \
        const QByteArray found = difference(actual, expected);                                               \
        QVERIFY2(found.isEmpty(), found.constData());                                                        \
    } while (false)

/// Once what is invalid has been painted, black are exactly the dots `(x, y)` for which this holds.
#define COMPARE_PAINTED(...)                                                                                 \
    do {                                                                                                     \
        WM_Exec();                                                                                           \
        COMPARE_DOTS(display.dots, dotsWhere([&](int x, int y) { return __VA_ARGS__; }));                    \
    } while (false)
