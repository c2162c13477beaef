#pragma once

#include <QtGlobal>
#include <array>

/// Characters of the text command language, as every wire shares them. Upper case counts as lower case.
namespace CommandText
{
/// What a byte is to the language; one bit each.
enum CharacterClass : quint8 {
    Digit = 1,
    InputSeparator = 2,  ///< * x v o b
    OutputSeparator = 4, ///< & ,
    CommandEnd = 8,      ///< ! . $ % CR: ends a command on every wire
    LineFeed = 16,       ///< ends a command on the network wires as well
    Space = 32,          ///< what may stand in front of a number
};

/// Folds "A" to "Z"; every other byte stays.
constexpr char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr quint8 classify(char c)
{
    switch (lowerCase(c)) {
    case '*':
    case 'x':
    case 'v':
    case 'o':
    case 'b':
        return InputSeparator;
    case '&':
    case ',':
        return OutputSeparator;
    case '!':
    case '.':
    case '$':
    case '%':
        return CommandEnd;
    case '\r':
        return CommandEnd | Space;
    case '\n':
        return LineFeed | Space;
    case ' ':
    case '\t':
    case '\v':
    case '\f':
        return Space;
    default:
        return c >= '0' && c <= '9' ? Digit : 0;
    }
}

constexpr std::array<quint8, 256> classTable()
{
    std::array<quint8, 256> table{};
    for (unsigned c = 0; c < table.size(); ++c) {
        table[c] = classify(static_cast<char>(c));
    }
    return table;
}
inline constexpr std::array<quint8, 256> Classes = classTable();

/// The classes that the byte is in.
inline int classOf(char c)
{
    return Classes[static_cast<unsigned char>(c)];
}

/// True when the byte is in one of the `classes`.
inline bool is(char c, int classes)
{
    return (classOf(c) & classes) != 0;
}

/// What ends a command on the network wires.
constexpr int NetworkEnd = CommandEnd | LineFeed;
} // namespace CommandText
