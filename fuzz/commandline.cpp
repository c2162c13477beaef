#include "commandinterpreter.h"
#include "commandtext.h"
#include "fuzz.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

using Command = CommandInterpreter;

namespace
{
/// The command and its numbers.
using Meaning = std::vector<int>;

struct Number {
    explicit Number(const std::string &text)
        : value(static_cast<quint16>(std::strtol(text.c_str(), &end, 10)))
        , isThere(end != text.c_str())
    {
    }
    char *end = nullptr;
    int value;
    bool isThere;
};

std::vector<std::string> split(const std::string &text, const std::string &separators)
{
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (separators.find(c) != std::string::npos) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

/// An input, then outputs; a list that another input separator ends was none, but for its last number.
Meaning routing(const std::string &line)
{
    const std::vector<std::string> lists = split(line, "*xvob");
    std::vector<std::string> fields = split(lists[0], "&,");
    Meaning meaning{fields.size() == 1 && lists.size() > 1 ? Command::RouteToSome : Command::SyntaxError};
    for (std::size_t i = 1; i < lists.size(); ++i) {
        const Number input(fields.back());
        const bool isLast = i + 1 == lists.size();
        fields = split(lists[i], "&,");
        const bool good =
            meaning[0] == Command::RouteToSome && input.isThere && fields.size() <= (isLast ? 4095 : 4096);
        meaning = {good ? Command::RouteToSome : Command::SyntaxError, (input.value + 0xFFFF) % 0x10000};
    }
    for (const std::string &output : fields) {
        meaning.push_back((Number(output).value + 0xFFFF) % 0x10000);
    }
    return meaning;
}

struct Word {
    std::string text;
    Command::Command command;
    bool hasNumber;
};
const Word Words[] = {{"temp", Command::Temperature, false},  {"all1", Command::RouteOneToOne, false},
                      {"beepon", Command::BeepOn, false},     {"beepoff", Command::BeepOff, false},
                      {"save", Command::SaveScene, true},     {">s", Command::SaveScene, true},
                      {"recall", Command::RecallScene, true}, {">r", Command::RecallScene, true}};

bool begins(const std::string &line, const std::string &word)
{
    return line.compare(0, word.size(), word) == 0;
}

/// Reads a line as the documents tell it, with no thought of speed.
Meaning meaningOf(std::string line)
{
    for (char &c : line) {
        c = CommandText::lowerCase(c);
    }
    line = begins(line, "0m") ? line.substr(2) : line;
    if (line.size() >= 4 && line.size() <= 6 && line.substr(line.size() - 3) == "all") {
        return {Number(line).isThere ? Command::RouteToAll : Command::SyntaxError, Number(line).value};
    }
    for (const auto &[text, command, hasNumber] : Words) {
        if (begins(line, text) && (line.size() > text.size()) == hasNumber) {
            return {command, Number(line.substr(text.size())).value};
        }
    }
    line = begins(line, ">c") && line.size() > 2 ? line.substr(2) : line;
    if (line.size() >= 2 && line.size() <= 4 && line.back() == '?') {
        return {Number(line).value != 0 ? Command::Query : Command::SyntaxError, Number(line).value};
    }
    return routing(line);
}

Meaning meaningOf(const CommandInterpreter &command)
{
    Meaning meaning{command.command(), command.number()};
    if (command.command() == Command::RouteToSome) {
        meaning[1] = command.input();
        meaning.insert(meaning.end(), command.outputs(), command.outputs() + command.outputCount());
    }
    return meaning;
}
} // namespace

/// Command lines, with what ends them on a serial port, on the network, or nowhere.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const std::pair<int, const char *> allEnds[] = {
        {0, ""}, {CommandText::CommandEnd, "!.$%\r"}, {CommandText::NetworkEnd, "!.$%\r\n"}};
    for (const auto &[classes, ends] : allEnds) {
        const CommandInterpreter command(text.data(), text.data() + size, classes);
        const std::string line = text.substr(0, text.find_first_of(ends));
        const Meaning meaning = meaningOf(line);
        const bool isError = meaning[0] == Command::SyntaxError;
        require(command.end() == text.data() + line.size());
        require(isError ? command.command() == Command::SyntaxError : meaning == meaningOf(command));
        const bool blocks[] = {false, false, false, false, true, true, false, false, true, true};
        require(command.blocks() == blocks[meaning[0]]);
    }
    return 0;
}
