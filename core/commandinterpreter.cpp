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

/// Beside the character classes: there is no more text.
constexpr int Limit = 0x100;

inline int classAt(const char *at, const char *limit)
{
    return at == limit ? Limit : CommandText::classOf(*at);
}

/// A number of so many digits fits into 32 bits.
constexpr int ShortNumber = 9;

/// Reads digits and moves `at` behind them. The value is right up to `ShortNumber` of them.
inline Number readDigits(const char *&at, const char *limit)
{
    const char *const digits = at;
    quint32 value = 0;
    quint32 digit = 0;
    while (at != limit && (digit = static_cast<quint32>(*at - '0')) <= 9) {
        value = value * 10 + digit;
        ++at;
    }
    return {static_cast<quint16>(value), at != digits};
}

/// Reads any number, with white space and a sign in front, as far as `limit` or one of `ends`, and moves `at`
/// behind it. One that is too long for a `long`, which has 32 bits on the unit, stays at its limit.
Number readNumber(const char *&at, const char *limit, int ends = 0)
{
    while (at != limit && is(*at, CommandText::Space) && !is(*at, ends)) {
        ++at;
    }
    const bool hasSign = at != limit && (*at == '-' || *at == '+');
    const int sign = hasSign && *at == '-' ? -1 : 1;
    at += hasSign ? 1 : 0;
    const char *const digits = at;
    long value = 0;
    for (; at != limit && is(*at, CommandText::Digit); ++at) {
        if (__builtin_mul_overflow(value, 10, &value) ||
            __builtin_add_overflow(value, sign * (*at - '0'), &value)) {
            value = sign < 0 ? std::numeric_limits<long>::min() : std::numeric_limits<long>::max();
        }
    }
    return {static_cast<quint16>(value), at != digits};
}

/// A field that is more than a short number; `at` is then at its end.
Number readField(const char *&at, const char *limit, int fieldEnds)
{
    const Number number = readNumber(at, limit, fieldEnds);
    while ((classAt(at, limit) & fieldEnds) == 0) {
        ++at;
    }
    return number;
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

enum Argument { Alone, WithNumber };
enum Duration { Quick, Blocks };

/// A command that is a word.
struct Word {
    const char *text;
    CommandInterpreter::Command command;
    Argument argument; ///< `WithNumber`: one character or more behind the word, read as a number
    Duration duration;
};
constexpr Word Words[] = {
    {"temp", CommandInterpreter::Temperature, Alone, Quick},
    {"all1", CommandInterpreter::RouteOneToOne, Alone, Quick},
    {"beepon", CommandInterpreter::BeepOn, Alone, Blocks},
    {"beepoff", CommandInterpreter::BeepOff, Alone, Blocks},
    {"save", CommandInterpreter::SaveScene, WithNumber, Blocks},
    {">s", CommandInterpreter::SaveScene, WithNumber, Blocks},
    {"recall", CommandInterpreter::RecallScene, WithNumber, Blocks},
    {">r", CommandInterpreter::RecallScene, WithNumber, Blocks},
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

/// A line is read as a routing first, which finds its end as well; only one with other characters than a
/// routing needs can be something else.
CommandInterpreter::CommandInterpreter(const char *text, const char *limit, int ends)
{
    m_command = route(text, limit, ends);
    if (!m_plain) {
        m_command = other(text);
    }
}

/// Fields with a number each, of which only the beginning counts. An input separator anywhere begins the list
/// anew with the number before it.
CommandInterpreter::Command CommandInterpreter::route(const char *text, const char *limit, int ends)
{
    const int fieldEnds = CommandText::InputSeparator | CommandText::OutputSeparator | ends | Limit;
    Command command = RouteToSome;
    int count = 0;
    for (const char *at = text;; ++at) {
        const char *const begin = at;
        Number field = readDigits(at, limit);
        int kind = classAt(at, limit);
        if ((kind & fieldEnds) == 0 || at - begin > ShortNumber) {
            const char *end = begin;
            field = readField(end, limit, fieldEnds);
            at = end;
            kind = classAt(at, limit);
            m_plain = false;
        }
        if (kind == CommandText::InputSeparator) {
            command = field.hasDigits ? command : SyntaxError;
            m_numbers[0] = field.value;
            count = 1;
            continue;
        }
        if (count == 0 || count == MaxNumbers) {
            command = SyntaxError;
        } else {
            m_numbers[count++] = static_cast<quint16>(field.value - 1);
        }
        if (kind != CommandText::OutputSeparator) {
            m_count = count;
            m_end = at;
            return command;
        }
    }
}

/// What is not a routing from its first character on.
CommandInterpreter::Command CommandInterpreter::other(const char *line)
{
    const char *begin = beginsWith(line, m_end, "0m") ? line + 2 : line;
    if (isAllForm(begin, m_end)) {
        return routeToAll(begin);
    }
    const Command found = word(begin);
    if (found != SyntaxError) {
        return found;
    }
    // At two characters the line is a question or a routing, whatever it begins with.
    if (m_end - begin > 2 && beginsWith(begin, m_end, ">c")) {
        begin += 2;
    }
    if (isQueryForm(begin, m_end)) {
        return query(begin);
    }
    return begin == line ? m_command : route(begin, m_end, 0);
}

/// \return SyntaxError when it is none of the words
CommandInterpreter::Command CommandInterpreter::word(const char *line)
{
    if (line != m_end && is(*line, CommandText::Digit)) {
        return SyntaxError; // spares a question the look-up
    }
    for (const Word &word : Words) {
        if (!beginsWith(line, m_end, word.text)) {
            continue;
        }
        const char *behind = line + std::strlen(word.text);
        if ((behind != m_end) == (word.argument == WithNumber)) {
            m_blocks = word.duration == Blocks;
            m_numbers[0] = readNumber(behind, m_end).value;
            return word.command;
        }
    }
    return SyntaxError;
}

CommandInterpreter::Command CommandInterpreter::routeToAll(const char *line)
{
    const Number input = readNumber(line, m_end);
    m_numbers[0] = input.value;
    return input.hasDigits ? RouteToAll : SyntaxError;
}

CommandInterpreter::Command CommandInterpreter::query(const char *line)
{
    m_numbers[0] = readNumber(line, m_end).value;
    return number() != 0 ? Query : SyntaxError;
}
