#pragma once

#include "font.h"

#include <algorithm>

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

/// Calls `visit(dots, width, number)` for each cell of a line. \return how many there are
template <class Visit>
constexpr int forEachCell(const char *line, Visit visit)
{
    int cells = 0;
    for (const char *end = line;; ++end) {
        if (isCellEnd(*end)) {
            visit(line, static_cast<int>(end - line), cells++);
            line = end + 1;
        }
        if (*end == '\0') {
            return cells;
        }
    }
}

/// One row of a cell.
struct CellLine {
    const char *dots;
    int width;
    int y;
    int cell; ///< its number, in the order of the pictures
    int character;
};

template <int Height, int Count, class Visit>
constexpr void forEachLine(const GUI_FontBand<Height> (&bands)[Count], Visit visit)
{
    int first = 0;
    for (const auto &band : bands) {
        int cells = 0;
        for (int y = 0; y < Height; ++y) {
            cells = forEachCell(band.lines[y], [&](const char *dots, int width, int cell) {
                visit(CellLine{dots, width, y, first + cell, band.first + cell});
            });
        }
        first += cells;
    }
}

struct Measures {
    int count = 0; ///< of cells
    int narrowest = GUI_FONT_MAX;
    int widest = 0;
    int last = -1;      ///< character
    bool ascend = true; ///< the characters, so that none is drawn twice
    bool haveSubstitute = false;
};

template <class Bands>
constexpr Measures measure(const Bands &bands)
{
    Measures all;
    forEachLine(bands, [&all](const CellLine &line) {
        if (line.y > 0) {
            return;
        }
        ++all.count;
        all.narrowest = std::min(all.narrowest, line.width);
        all.widest = std::max(all.widest, line.width);
        all.ascend = all.ascend && line.character > all.last;
        all.haveSubstitute = all.haveSubstitute || line.character == GUI_FONT_SUBSTITUTE;
        all.last = line.character;
    });
    return all;
}

template <int Count, int Bytes>
struct Rows {
    unsigned char cells[Count][Bytes];
};

template <int Count, int RowBytes, int Height, int BandCount>
constexpr auto readRows(const GUI_FontBand<Height> (&bands)[BandCount])
{
    Rows<Count, RowBytes * Height> rows{};
    forEachLine(bands, [&rows](const CellLine &line) {
        for (int x = 0; x < line.width; ++x) {
            if (line.dots[x] == '#') {
                rows.cells[line.cell][line.y * RowBytes + x / 8] |= 0x80U >> x % 8;
            }
        }
    });
    return rows;
}

/// Makes the rectangle around a cell's dots include those of one more row.
constexpr void includeDots(GUI_Glyph &glyph, const CellLine &line)
{
    for (int x = 0; x < line.width; ++x) {
        if (line.dots[x] == '#') {
            glyph.left = std::min<unsigned char>(glyph.left, x);
            glyph.top = std::min<unsigned char>(glyph.top, line.y);
            glyph.right = std::max<unsigned char>(glyph.right, x);
            glyph.bottom = line.y;
        }
    }
}

struct Table {
    GUI_Glyph glyphs[256];
};

template <class Bands, class Rows>
constexpr Table tabulate(const Bands &bands, const Rows &rows)
{
    Table table{};
    forEachLine(bands, [&](const CellLine &line) {
        GUI_Glyph &glyph = table.glyphs[line.character];
        if (line.y == 0) {
            const auto width = static_cast<unsigned char>(line.width);
            glyph = {rows.cells[line.cell], width, GUI_FONT_MAX, GUI_FONT_MAX, 0, 0};
        }
        includeDots(glyph, line);
    });
    for (GUI_Glyph &glyph : table.glyphs) {
        if (glyph.width == 0) {
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
    static constexpr auto Rows = FontPictures::readRows<Cells.count, RowBytes>(Bands);
    static constexpr auto Table = FontPictures::tabulate(Bands, Rows);

public:
    static constexpr GUI_Font Font = {Cells.widest, Height, Table.glyphs};
};
