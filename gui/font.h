#pragma once

/// The cell of a character: its dots and the spacing that sets it apart, at the right and below.
struct GUI_Glyph {
    /// From the top, one byte each if the font's `width` is at most 8, else two; leftmost dot in bit 7 of the
    /// first. Never null. Dots beyond `width` do not count.
    const unsigned char *rows;
    unsigned char width; ///< in dots, 1 to the font's; its last column is spacing, without dots
    /// The smallest rectangle around the dots, both corners included; right < left when there are none.
    unsigned char left, top, right, bottom;
};

/// Cells are at most as wide and as high as this, in dots.
constexpr int GUI_FONT_MAX = 16;

/// A bitmap font over Latin-1, of fixed or proportional width. One with a width or height out of range is
/// ignored wherever a font is set. It must live as long as it is used. `GUI_FontPictures` makes one.
struct GUI_Font {
    unsigned char width;  ///< of its widest cell, in dots, 1..GUI_FONT_MAX
    unsigned char height; ///< of all cells, in dots, 1..GUI_FONT_MAX
    /// 256 cells by character; where the font has none, that of a substitute.
    const GUI_Glyph *glyphs;

    constexpr int rowBytes() const { return width > 8 ? 2 : 1; }
    constexpr const GUI_Glyph &glyph(unsigned char character) const { return glyphs[character]; }
};

/// 6 x 8: capitals and digits are 5 x 7, column 5 and row 7 are spacing, row 7 also takes descenders.
extern const GUI_Font GUI_Font6x8;

/// Proportional, 16 high, for a start page or a clock: strokes are two dots wide, capitals and digits 11
/// high, all digits have one width. Accents reach row 0 and descenders row 15: lines of text need a gap.
extern const GUI_Font GUI_Font16;
