#pragma once

#include "gui.h"

#include <algorithm>

/// Rectangles. Where a result may be empty, every empty rectangle is as good as another.
using Rect = GUI_Rect;

struct Point {
    int x, y;
};

constexpr bool operator==(const Point &a, const Point &b)
{
    return a.x == b.x && a.y == b.y;
}

constexpr bool operator==(const Rect &a, const Rect &b)
{
    return a.x0 == b.x0 && a.y0 == b.y0 && a.x1 == b.x1 && a.y1 == b.y1;
}

constexpr Rect NoRect{0, 0, -1, -1};

/// What coordinates of the application are bounded to before anything is added to them.
constexpr int FarthestDot = 0xFFFFFF;
constexpr Rect Everywhere{-FarthestDot, -FarthestDot, FarthestDot, FarthestDot};

/// Sizes, and places of windows within their parent, go up to this. With the number of windows bounded by
/// their handles, no sum of places overflows.
constexpr int FarthestPlace = 16383;

constexpr int bounded(int coordinate)
{
    return std::clamp(coordinate, -FarthestDot, FarthestDot);
}

constexpr Rect bounded(const Rect &r)
{
    return {bounded(r.x0), bounded(r.y0), bounded(r.x1), bounded(r.y1)};
}

constexpr bool isEmpty(const Rect &r)
{
    return r.x1 < r.x0 || r.y1 < r.y0;
}

constexpr Rect moved(const Rect &r, int dx, int dy)
{
    return {r.x0 + dx, r.y0 + dy, r.x1 + dx, r.y1 + dy};
}

constexpr Rect shrunk(const Rect &r, int by)
{
    return {r.x0 + by, r.y0 + by, r.x1 - by, r.y1 - by};
}

constexpr Rect intersection(const Rect &a, const Rect &b)
{
    return {std::max(a.x0, b.x0), std::max(a.y0, b.y0), std::min(a.x1, b.x1), std::min(a.y1, b.y1)};
}

/// The smallest rectangle around both.
constexpr Rect united(const Rect &a, const Rect &b)
{
    if (isEmpty(a)) {
        return b;
    }
    if (isEmpty(b)) {
        return a;
    }
    return {std::min(a.x0, b.x0), std::min(a.y0, b.y0), std::max(a.x1, b.x1), std::max(a.y1, b.y1)};
}

/// What a hole leaves of a rectangle: disjoint pieces, none of them empty.
struct Remainder {
    Rect pieces[4];
    int count = 0;

    constexpr Remainder(const Rect &r, const Rect &cut)
        : pieces{}
    {
        const Rect hole = intersection(cut, r);
        if (isEmpty(hole)) {
            add(r);
            return;
        }
        add({r.x0, r.y0, r.x1, hole.y0 - 1});
        add({r.x0, hole.y0, hole.x0 - 1, hole.y1});
        add({hole.x1 + 1, hole.y0, r.x1, hole.y1});
        add({r.x0, hole.y1 + 1, r.x1, r.y1});
    }

    constexpr const Rect *begin() const { return pieces; }
    constexpr const Rect *end() const { return pieces + count; }

private:
    constexpr void add(const Rect &piece)
    {
        if (!isEmpty(piece)) {
            pieces[count++] = piece;
        }
    }
};
