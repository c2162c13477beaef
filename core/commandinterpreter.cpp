#include "commandinterpreter.h"

#include <cstdlib>
#include <cstring>

namespace
{
struct Number {
    quint16 value;
    bool hasDigits;
};

Number readNumber(const char *text)
{
    char *end = nullptr;
    const long value = std::strtol(text, &end, 10);
    return {static_cast<quint16>(value), end != text};
}

bool beginsWith(const char *text, const char *word)
{
    return std::strncmp(text, word, std::strlen(word)) == 0;
}

bool isInputSeparator(char c)
{
    return c == '*' || c == 'x' || c == 'v' || c == 'o' || c == 'b';
}

bool isOutputSeparator(char c)
{
    return c == '&' || c == ',';
}

/// One to three characters and "all".
bool isAllForm(const char *line, int length)
{
    return length >= 4 && length <= 6 && std::memcmp(line + length - 3, "all", 3) == 0;
}

/// One to three characters and "?".
bool isQueryForm(const char *line, int length)
{
    return length >= 2 && length <= 4 && line[length - 1] == '?';
}
} // namespace

CommandInterpreter::CommandInterpreter(char *line, quint16 length)
{
    m_command = parse(line, length);
}

CommandInterpreter::Command CommandInterpreter::parse(char *line, int length)
{
    if (beginsWith(line, "0m")) {
        line += 2;
        length -= 2;
    }
    if (length == 4 && beginsWith(line, "temp")) {
        return Temperature;
    }
    if (length == 6 && beginsWith(line, "beepon")) {
        return BeepOn;
    }
    if (length == 7 && beginsWith(line, "beepoff")) {
        return BeepOff;
    }
    if (isAllForm(line, length)) {
        return routeToAll(line);
    }
    if (length == 4 && beginsWith(line, "all1")) {
        return RouteOneToOne;
    }
    // At two characters the line is a question or a routing, whatever it begins with.
    if (length > 2) {
        if (length >= 5 && beginsWith(line, "save")) {
            return withNumber(SaveScene, line + 4);
        }
        if (beginsWith(line, ">s")) {
            return withNumber(SaveScene, line + 2);
        }
        if (length >= 7 && beginsWith(line, "recall")) {
            return withNumber(RecallScene, line + 6);
        }
        if (beginsWith(line, ">r")) {
            return withNumber(RecallScene, line + 2);
        }
        if (beginsWith(line, ">c")) {
            return queryOrRoute(line + 2, length - 2);
        }
    }
    return queryOrRoute(line, length);
}

CommandInterpreter::Command CommandInterpreter::withNumber(Command command, const char *text)
{
    m_numbers[0] = readNumber(text).value;
    m_count = 1;
    return command;
}

CommandInterpreter::Command CommandInterpreter::routeToAll(const char *text)
{
    return startList(text) ? RouteToAll : SyntaxError;
}

CommandInterpreter::Command CommandInterpreter::query(const char *text)
{
    withNumber(Query, text);
    return number() != 0 ? Query : SyntaxError;
}

CommandInterpreter::Command CommandInterpreter::queryOrRoute(char *line, int length)
{
    return isQueryForm(line, length) ? query(line) : route(line, length);
}

/// An input separator anywhere begins the list anew with the number before it.
CommandInterpreter::Command CommandInterpreter::route(char *line, int length)
{
    m_count = 0;
    const char *field = line;
    for (char *c = line; c != line + length; ++c) {
        const bool afterInput = isInputSeparator(*c);
        if (!afterInput && !isOutputSeparator(*c)) {
            continue;
        }
        *c = '\0';
        if (afterInput ? !startList(field) : !addOutput(field)) {
            return SyntaxError;
        }
        field = c + 1;
    }
    return addOutput(field) ? RouteToSome : SyntaxError;
}

bool CommandInterpreter::startList(const char *field)
{
    const Number input = readNumber(field);
    m_numbers[0] = input.value;
    m_count = 1;
    return input.hasDigits;
}

/// False when no input has been named yet, or when there are too many outputs.
bool CommandInterpreter::addOutput(const char *field)
{
    if (m_count == 0 || m_count == MaxNumbers) {
        return false;
    }
    m_numbers[m_count++] = static_cast<quint16>(readNumber(field).value - 1);
    return true;
}
