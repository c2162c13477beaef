#pragma once

#include "gui.h"
#include "lcdmodule.h"

#include <QByteArray>
#include <functional>

/// Whether the LCD is dark exactly at the dots for which this holds.
inline bool lcdIsDark(const sim::LcdModule &lcd, const std::function<bool(int, int)> &where)
{
    bool same = true;
    for (int i = 0; i < 128 * 64; ++i) {
        same = same && lcd.isLit(i % 128, i / 128) == where(i % 128, i / 128);
    }
    return same;
}

/// Reads the text that stands in a part of the LCD, as an eye would: dots are compared with the font's
/// glyphs. `isLit(x, y)` tells the dots; `inverted` is light on dark. A text may begin at any dot; blanks
/// around it are not part of it. \return the text; "?" when there are dots that are no text
inline QByteArray lcdText(const std::function<bool(int, int)> &isLit, const GUI_Rect &area,
                          bool inverted = false)
{
    const int width = GUI_Font6x8.width;
    const int height = GUI_Font6x8.height;
    const auto characterAt = [&](int left, int top) {
        for (int character = ' '; character < 0x7F; ++character) {
            const unsigned char *rows = GUI_Font6x8.glyph(static_cast<unsigned char>(character)).rows;
            bool same = true;
            for (int i = 0; i < width * height && same; ++i) {
                const int x = i % width;
                const int y = i / width;
                same = ((rows[y] & (0x80 >> x)) != 0) == (isLit(left + x, top + y) != inverted);
            }
            if (same) {
                return static_cast<char>(character);
            }
        }
        return '\0';
    };
    for (int top = area.y0; top + height - 1 <= area.y1; ++top) {
        for (int first = area.x0; first < area.x0 + width; ++first) {
            QByteArray text;
            for (int x = first; x + width - 1 <= area.x1; x += width) {
                text += characterAt(x, top);
            }
            if (!text.contains('\0') && !text.trimmed().isEmpty()) {
                return text.trimmed();
            }
        }
    }
    bool isBlank = true;
    for (int y = area.y0; y <= area.y1; ++y) {
        for (int x = area.x0; x <= area.x1; ++x) {
            isBlank = isBlank && isLit(x, y) == inverted;
        }
    }
    return isBlank ? "" : "?";
}
