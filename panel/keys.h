#pragma once

/// Codes of the key board. Input keys are 1 to 40; they also stand for scenes and digits.
enum Key {
    KeyTen = 10,     ///< the digit 0
    KeyOutputs = 50, ///< output key n is 50 + n
    KeyLeft = 111,   ///< previous, all
    KeyRight = 112,  ///< next, none
    KeySave = 113,
    KeyLoad = 114,
    KeyMenu = 115,
    KeyEdit = 116
};
