#include "commandinterpreter.h"

#include "commandtext.h"

#include <cstring>
#include <limits>

using CommandText::is;

namespace
{
struct Number {
    quint16 value;
    bool hasDigits;
};

/// Reads as far as a number goes, white space and a sign in front included, and moves `at` behind it. One
/// that is too long for 64 bits stays at their limit.
Number readNumber(const char *&at, const char *end)
{
    while (at != end && is(*at, CommandText::Space)) {
        ++at;
    }
    bool negative = false;
    if (at != end && (*at == '-' || *at == '+')) {
        negative = *at++ == '-';
    }
    const char *const digits = at;
    qint64 value = 0;
    for (; at != end && is(*at, CommandText::Digit); ++at) {
        const int digit = negative ? '0' - *at : *at - '0';
        if (__builtin_mul_overflow(value, 10, &value) || __builtin_add_overflow(value, digit, &value)) {
            value = negative ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
        }
    }
    return {static_cast<quint16>(value), at != digits};
}

/// Compares with a text in lower case.
bool beginsWith(const char *line, const char *end, const char *text)
{
    for (; *text != '\0'; ++text, ++line) {
        if (line == end || CommandText::lowerCase(*line) != *text) {
            return false;
        }
    }
    return true;
}

/// A command that is a word, alone or with a number behind it.
struct Word {
    const char *text;
    CommandInterpreter::Command command;
    bool takesNumber; ///< one character or more behind the word, read as a number
};
constexpr Word Words[] = {
    {"temp", CommandInterpreter::Temperature, false},  {"all1", CommandInterpreter::RouteOneToOne, false},
    {"beepon", CommandInterpreter::BeepOn, false},     {"beepoff", CommandInterpreter::BeepOff, false},
    {"save", CommandInterpreter::SaveScene, true},     {">s", CommandInterpreter::SaveScene, true},
    {"recall", CommandInterpreter::RecallScene, true}, {">r", CommandInterpreter::RecallScene, true},
};

/// One to three characters and "all".
bool isAllForm(const char *line, const char *end)
{
    return end - line >= 4 && end - line <= 6 && beginsWith(end - 3, end, "all");
}

/// One to three characters and "?".
bool isQueryForm(const char *line, const char *end)
{
    return end - line >= 2 && end - line <= 4 && end[-1] == '?';
}
} // namespace

CommandInterpreter::CommandInterpreter(const char *line, int length)
{
    m_command = parse(line, line + length);
}

bool CommandInterpreter::blocks() const
{
    return m_command == SaveScene || m_command == RecallScene || m_command == BeepOn || m_command == BeepOff;
}

CommandInterpreter::Command CommandInterpreter::parse(const char *line, const char *end)
{
    if (beginsWith(line, end, "0m")) {
        line += 2;
    }
    // No word begins with a digit, and no form but the routing ends with one.
    if (line != end && is(*line, CommandText::Digit) && is(end[-1], CommandText::Digit)) {
        return route(line, end);
    }
    if (isAllForm(line, end)) {
        return routeToAll(line, end);
    }
    return word(line, end);
}

CommandInterpreter::Command CommandInterpreter::word(const char *line, const char *end)
{
    for (const Word &word : Words) {
        const char *behind = line + std::strlen(word.text);
        if (beginsWith(line, end, word.text) && (behind != end) == word.takesNumber) {
            m_numbers[0] = readNumber(behind, end).value;
            return word.command;
        }
    }
    // At two characters the line is a question or a routing, whatever it begins with.
    return queryOrRoute(end - line > 2 && beginsWith(line, end, ">c") ? line + 2 : line, end);
}

CommandInterpreter::Command CommandInterpreter::routeToAll(const char *line, const char *end)
{
    const Number input = readNumber(line, end);
    m_numbers[0] = input.value;
    return input.hasDigits ? RouteToAll : SyntaxError;
}

CommandInterpreter::Command CommandInterpreter::queryOrRoute(const char *line, const char *end)
{
    return isQueryForm(line, end) ? query(line, end) : route(line, end);
}

CommandInterpreter::Command CommandInterpreter::query(const char *line, const char *end)
{
    m_numbers[0] = readNumber(line, end).value;
    return number() != 0 ? Query : SyntaxError;
}

/// Fields with a number each, of which only the beginning counts. An input separator anywhere begins the list
/// anew with the number before it.
CommandInterpreter::Command CommandInterpreter::route(const char *line, const char *end)
{
    for (const char *at = line;; ++at) {
        const Number field = readNumber(at, end);
        while (at != end && !is(*at, CommandText::InputSeparator | CommandText::OutputSeparator)) {
            ++at;
        }
        if (at != end && is(*at, CommandText::InputSeparator)) {
            if (!field.hasDigits) {
                return SyntaxError;
            }
            m_numbers[0] = field.value;
            m_count = 1;
            continue;
        }
        if (m_count == 0 || m_count == MaxNumbers) {
            return SyntaxError;
        }
        m_numbers[m_count++] = static_cast<quint16>(field.value - 1);
        if (at == end) {
            return RouteToSome;
        }
    }
}
