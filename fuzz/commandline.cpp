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
/// The numbers of a routing count from 0.
struct Meaning {
    Command::Command command = Command::SyntaxError;
    std::vector<quint16> numbers;
};

bool hasNumber(const std::string &text)
{
    char *end = nullptr;
    std::strtol(text.c_str(), &end, 10);
    return end != text.c_str();
}

quint16 numberIn(const std::string &text)
{
    return static_cast<quint16>(std::strtol(text.c_str(), nullptr, 10));
}

bool begins(const std::string &line, const std::string &word)
{
    return line.compare(0, word.size(), word) == 0;
}

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

/// An input, then outputs; one that has its list behind another input separator was no list.
Meaning routing(const std::string &line)
{
    const std::vector<std::string> lists = split(line, "*xvob");
    bool good = lists.size() > 1;
    for (std::size_t i = 0; good && i + 1 < lists.size(); ++i) {
        const std::vector<std::string> fields = split(lists[i], "&,");
        good = hasNumber(fields.back()) && fields.size() <= (i == 0 ? 1 : 4096);
    }
    const std::vector<std::string> outputs = split(lists.back(), "&,");
    if (!good || outputs.size() > 4095) {
        return {};
    }
    const std::string input = split(lists[lists.size() - 2], "&,").back();
    Meaning meaning{Command::RouteToSome, {static_cast<quint16>(numberIn(input) - 1)}};
    for (const std::string &output : outputs) {
        meaning.numbers.push_back(static_cast<quint16>(numberIn(output) - 1));
    }
    return meaning;
}

/// Reads a line as the documents tell it, with no thought of speed.
Meaning meaningOf(std::string line)
{
    for (char &c : line) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    line = begins(line, "0m") ? line.substr(2) : line;
    if (line.size() >= 4 && line.size() <= 6 && line.substr(line.size() - 3) == "all") {
        return hasNumber(line) ? Meaning{Command::RouteToAll, {numberIn(line)}} : Meaning{};
    }
    const std::pair<const char *, Command::Command> alone[] = {{"temp", Command::Temperature},
                                                               {"all1", Command::RouteOneToOne},
                                                               {"beepon", Command::BeepOn},
                                                               {"beepoff", Command::BeepOff}};
    for (const auto &[word, command] : alone) {
        if (line == word) {
            return {command, {}};
        }
    }
    const std::pair<std::string, Command::Command> numbered[] = {{"save", Command::SaveScene},
                                                                 {">s", Command::SaveScene},
                                                                 {"recall", Command::RecallScene},
                                                                 {">r", Command::RecallScene}};
    for (const auto &[word, command] : numbered) {
        if (begins(line, word) && line.size() > word.size()) {
            return {command, {numberIn(line.substr(word.size()))}};
        }
    }
    line = begins(line, ">c") && line.size() > 2 ? line.substr(2) : line;
    if (line.size() >= 2 && line.size() <= 4 && line.back() == '?') {
        return numberIn(line) != 0 ? Meaning{Command::Query, {numberIn(line)}} : Meaning{};
    }
    return routing(line);
}

std::vector<quint16> numbersOf(const CommandInterpreter &command)
{
    std::vector<quint16> numbers;
    if (command.command() == Command::RouteToSome) {
        numbers.push_back(command.input());
        numbers.insert(numbers.end(), command.outputs(), command.outputs() + command.outputCount());
    } else {
        numbers.push_back(command.number());
    }
    return numbers;
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
        require(command.end() == text.data() + line.size());
        require(command.command() == meaning.command);
        require(meaning.numbers.empty() || meaning.numbers == numbersOf(command));
        const bool blocks[] = {false, false, false, false, true, true, false, false, true, true};
        require(command.blocks() == blocks[meaning.command]);
    }
    return 0;
}
