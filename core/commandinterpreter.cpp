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

/// Reads digits and moves `at` behind them. A number that is too long for 64 bits stays at their limit.
inline Number readDigits(const char *&at, const char *limit, int sign)
{
    const char *const digits = at;
    qint64 value = 0;
    for (; (classAt(at, limit) & CommandText::Digit) != 0; ++at) {
        if (__builtin_mul_overflow(value, 10, &value) ||
            __builtin_add_overflow(value, sign * (*at - '0'), &value)) {
            value = sign < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
        }
    }
    return {static_cast<quint16>(value), at != digits};
}

/// The same with white space and a sign in front, as far as `limit` or one of `ends`.
Number readNumber(const char *&at, const char *limit, int ends = 0)
{
    while (at != limit && is(*at, CommandText::Space) && !is(*at, ends)) {
        ++at;
    }
    const bool hasSign = at != limit && (*at == '-' || *at == '+');
    const int sign = hasSign && *at == '-' ? -1 : 1;
    at += hasSign ? 1 : 0;
    return readDigits(at, limit, sign);
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

/// A line is read as a routing first, which finds its end as well; only one with other characters than a
/// routing needs can be something else.
CommandInterpreter::CommandInterpreter(const char *text, const char *limit, int ends)
{
    m_command = route(text, limit, ends);
    if (!m_plain) {
        m_command = other(text);
    }
}

bool CommandInterpreter::blocks() const
{
    return m_command == SaveScene || m_command == RecallScene || m_command == BeepOn || m_command == BeepOff;
}

/// Fields with a number each, of which only the beginning counts. An input separator anywhere begins the list
/// anew with the number before it.
CommandInterpreter::Command CommandInterpreter::route(const char *text, const char *limit, int ends)
{
    const int fieldEnds = CommandText::InputSeparator | CommandText::OutputSeparator | ends | Limit;
    Command command = RouteToSome;
    int count = 0;
    for (const char *at = text;; ++at) {
        Number field = readDigits(at, limit, 1);
        int kind = classAt(at, limit);
        if ((kind & fieldEnds) == 0) {
            m_plain = false;
            field = field.hasDigits ? field : readNumber(at, limit, ends);
            while (((kind = classAt(at, limit)) & fieldEnds) == 0) {
                ++at;
            }
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
    for (const Word &word : Words) {
        if (!beginsWith(line, m_end, word.text)) {
            continue;
        }
        const char *behind = line + std::strlen(word.text);
        if ((behind != m_end) == word.takesNumber) {
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
