#pragma once

/// Characters of the text command language, as every wire shares them.
namespace CommandText
{
/// Folds "A" to "Z"; every other byte stays.
constexpr char lowerCase(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The bytes that end a command on every wire. (The network wires take a line feed as well.)
constexpr bool endsCommand(char c)
{
    return c == '!' || c == '.' || c == '$' || c == '%' || c == '\r';
}
} // namespace CommandText
