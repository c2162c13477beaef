#pragma once

#include "font.h"

#include <algorithm>
#include <iterator>

/// Successive characters of a font that is drawn as text: their cells side by side, '#' for a dot, '.' for
/// none, a blank between two cells. The last column of a cell is spacing, without dots.
template <int Height>
struct GUI_FontBand {
    unsigned char first; ///< the character of the leftmost cell
    const char *lines[Height];
};

/// The character whose cell stands for those that a drawn font does not have.
constexpr int GUI_FONT_SUBSTITUTE = 0x7F;

/// What `GUI_FontPictures` reads pictures with.
namespace FontPictures
{
constexpr bool isCellEnd(char c)
{
    return c == ' ' || c == '\0';
}

/// Whether all lines have the cells of the first one.
template <int Height>
constexpr bool isWellDrawn(const GUI_FontBand<Height> &band)
{
    for (const char *line : band.lines) {
        const char *first = band.lines[0];
        for (; line != nullptr && *line != '\0'; ++line, ++first) {
            const bool isDot = *line == '#' && !isCellEnd(line[1]);
            if (isCellEnd(*first) ? *line != *first : *line != '.' && !isDot) {
                return false;
            }
        }
        if (line == nullptr || *first != '\0') {
            return false;
        }
    }
    return true;
}

template <class Bands>
constexpr bool areWellDrawn(const Bands &bands)
{
    for (const auto &band : bands) {
        if (!isWellDrawn(band)) {
            return false;
        }
    }
    return true;
}

/// Calls `visit(character, width)` for each cell.
template <class Bands, class Visit>
constexpr void forEachCell(const Bands &bands, Visit visit)
{
    for (const auto &band : bands) {
        int character = band.first;
        int width = 0;
        for (const char *dot = band.lines[0]; dot == band.lines[0] || dot[-1] != '\0'; ++dot) {
            if (isCellEnd(*dot)) {
                visit(character++, width);
                width = 0;
            } else {
                ++width;
            }
        }
    }
}

struct Measures {
    int count = 0; ///< of cells
    int narrowest = GUI_FONT_MAX;
    int widest = 0;
    bool ascend = true; ///< characters, so that none is drawn twice
    bool haveSubstitute = false;
    int last = -1;
};

template <class Bands>
constexpr Measures measure(const Bands &bands)
{
    Measures all;
    forEachCell(bands, [&all](int character, int width) {
        ++all.count;
        all.narrowest = std::min(all.narrowest, width);
        all.widest = std::max(all.widest, width);
        all.ascend = all.ascend && character > all.last;
        all.haveSubstitute = all.haveSubstitute || character == GUI_FONT_SUBSTITUTE;
        all.last = character;
    });
    return all;
}

template <int Count, int Bytes>
struct Rows {
    unsigned char cells[Count][Bytes];
};

template <int Count, int RowBytes, int Height, class Bands>
constexpr auto readRows(const Bands &bands)
{
    Rows<Count, RowBytes * Height> rows{};
    int first = 0;
    for (const auto &band : bands) {
        int cell = 0;
        for (int y = 0; y < Height; ++y) {
            cell = first;
            int x = 0;
            for (const char *dot = band.lines[y]; *dot != '\0'; ++dot) {
                if (*dot == ' ') {
                    ++cell;
                    x = 0;
                    continue;
                }
                if (*dot == '#') {
                    rows.cells[cell][y * RowBytes + x / 8] |= 0x80U >> x % 8;
                }
                ++x;
            }
        }
        first = cell + 1;
    }
    return rows;
}

struct Table {
    GUI_Glyph glyphs[256];
};

template <class Bands, class Rows>
constexpr Table tabulate(const Bands &bands, const Rows &rows)
{
    Table table{};
    int cell = 0;
    forEachCell(bands, [&](int character, int width) {
        table.glyphs[character] = {rows.cells[cell++], static_cast<unsigned char>(width)};
    });
    for (GUI_Glyph &glyph : table.glyphs) {
        if (glyph.rows == nullptr) {
            glyph = table.glyphs[GUI_FONT_SUBSTITUTE];
        }
    }
    return table;
}

template <int Height>
constexpr int heightOf(const GUI_FontBand<Height> & /*band*/)
{
    return Height;
}
} // namespace FontPictures

/// Makes a font of pictures while the compiler runs, which refuses those that are not well drawn:
///
///     constexpr GUI_FontBand<8> Bands[] = {{'0', {".###.. ..#...", /* and 7 lines more */}},
///                                          {GUI_FONT_SUBSTITUTE, {"#####.", /* and 7 lines more */}}};
///     const GUI_Font Digits = GUI_FontPictures<Bands>::Font;
///
/// The bands stand at namespace scope, in the order of their characters.
template <const auto &Bands>
class GUI_FontPictures
{
    static_assert(FontPictures::areWellDrawn(Bands),
                  "cells of '.' and '#' with a blank last column, alike in all lines of a band");

    static constexpr int Height = FontPictures::heightOf(Bands[0]);
    static constexpr auto Cells = FontPictures::measure(Bands);
    static_assert(Cells.narrowest > 0 && Cells.widest <= GUI_FONT_MAX && Height <= GUI_FONT_MAX,
                  "cells of 1 to 16 dots, without blanks at the ends of a line");
    static_assert(Cells.ascend && Cells.last <= 0xFF, "no character is drawn twice");
    static_assert(Cells.haveSubstitute, "a picture for the characters that have none");

    static constexpr int RowBytes = Cells.widest > 8 ? 2 : 1;
    static constexpr auto Rows = FontPictures::readRows<Cells.count, RowBytes, Height>(Bands);
    static constexpr auto Table = FontPictures::tabulate(Bands, Rows);

public:
    static constexpr GUI_Font Font = {Cells.widest, Height, Table.glyphs};
};
