#pragma once

/// A bitmap font whose characters all have the same cell, over Latin-1.
struct GUI_Font {
    unsigned char width;  ///< of the cell, in dots, spacing included; 1 to 8
    unsigned char height; ///< of the cell, in dots, spacing included
    /// The rows of a character's cell from the top, `height` bytes, leftmost dot in bit 7. A character that
    /// the font does not have gets the rows of a substitute; never null.
    const unsigned char *(*glyph)(unsigned char character);
};

/// 6 x 8: capitals and digits are 5 x 7, column 5 and row 7 are spacing, row 7 also takes descenders.
extern const GUI_Font GUI_Font6x8;
