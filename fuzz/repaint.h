#pragma once

#include "framememory.h"
#include "fuzz.h"
#include "gui.h"

#include <algorithm>
#include <iterator>
#include <vector>

/// What has become invalid so far has to be all that has changed: the picture is the same when all of it is
/// painted anew, over dots that no window has drawn.
inline void requireWholePicture()
{
    while (WM_Exec() != 0) {
    }
    const std::vector<std::uint16_t> shown(std::begin(pLcdBuffer), std::end(pLcdBuffer));
    std::fill(std::begin(pLcdBuffer), std::end(pLcdBuffer), std::uint16_t(7));
    WM_DeleteWindow(WM_CreateWindow(0, 0, LCD_XSIZE, LCD_YSIZE, 0, WM_VISIBLE, nullptr));
    WM_Exec();
    require(std::equal(shown.begin(), shown.end(), pLcdBuffer));
}
