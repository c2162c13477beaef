#include "commandinterpreter.h"
#include "commandtext.h"
#include "testregistry.h"

#include <QByteArray>
#include <QTest>
#include <cstdlib>
#include <random>

namespace
{
/// What a line asks for, as text.
QByteArray described(CommandInterpreter::Command command, const std::vector<unsigned> &numbers)
{
    QByteArray text = QByteArray::number(int(command));
    for (const unsigned number : numbers) {
        text += " " + QByteArray::number(number & 0xFFFF);
    }
    return text;
}

QByteArray described(const CommandInterpreter &command)
{
    switch (command.command()) {
    case CommandInterpreter::RouteToSome: {
        std::vector<unsigned> numbers{command.input()};
        numbers.insert(numbers.end(), command.outputs(), command.outputs() + command.outputCount());
        return described(command.command(), numbers);
    }
    case CommandInterpreter::RouteToAll:
        return described(command.command(), {command.input()});
    case CommandInterpreter::SaveScene:
    case CommandInterpreter::RecallScene:
    case CommandInterpreter::Query:
        return described(command.command(), {command.number()});
    default:
        return described(command.command(), {});
    }
}

/// Of the first `size` bytes of the line, to whose end the parser must come.
QByteArray meaning(const QByteArray &line, int size)
{
    const char *const end = line.constData() + size;
    const CommandInterpreter command(line.constData(), end);
    return command.end() == end ? described(command) : "another end";
}

unsigned numberOf(const QByteArray &text)
{
    return unsigned(std::strtol(text.constData(), nullptr, 10));
}

bool hasNumber(const QByteArray &text)
{
    char *end = nullptr;
    std::strtol(text.constData(), &end, 10);
    return end != text.constData();
}

QByteArray naiveRoute(const QByteArray &line)
{
    std::vector<unsigned> numbers;
    QByteArray field;
    for (const char c : line + '&') {
        if (c != '\0' && strchr("*xvob", c) != nullptr) {
            if (!hasNumber(field)) {
                return described(CommandInterpreter::SyntaxError, {});
            }
            numbers = {numberOf(field) - 1};
            field.clear();
        } else if (c == '&' || c == ',') {
            if (numbers.empty()) {
                return described(CommandInterpreter::SyntaxError, {});
            }
            numbers.push_back(numberOf(field) - 1);
            field.clear();
        } else {
            field += c;
        }
    }
    return described(CommandInterpreter::RouteToSome, numbers);
}

/// The same language rule by rule, on a line of its own and by the C library.
QByteArray naive(QByteArray line)
{
    line = line.toLower();
    if (line.startsWith("0m")) {
        line = line.mid(2);
    }
    static const std::pair<const char *, CommandInterpreter::Command> words[] = {
        {"temp", CommandInterpreter::Temperature},
        {"beepon", CommandInterpreter::BeepOn},
        {"beepoff", CommandInterpreter::BeepOff},
        {"all1", CommandInterpreter::RouteOneToOne}};
    for (const auto &[word, command] : words) {
        if (line == word) {
            return described(command, {});
        }
    }
    if (line.size() >= 4 && line.size() <= 6 && line.endsWith("all")) {
        return hasNumber(line) ? described(CommandInterpreter::RouteToAll, {numberOf(line) - 1})
                               : described(CommandInterpreter::SyntaxError, {});
    }
    static const std::pair<QByteArray, CommandInterpreter::Command> numbered[] = {
        {"save", CommandInterpreter::SaveScene},
        {">s", CommandInterpreter::SaveScene},
        {"recall", CommandInterpreter::RecallScene},
        {">r", CommandInterpreter::RecallScene}};
    for (const auto &[word, command] : numbered) {
        if (line.size() > word.size() && line.startsWith(word)) {
            return described(command, {numberOf(line.mid(word.size()))});
        }
    }
    if (line.size() >= 3 && line.startsWith(">c")) {
        line = line.mid(2);
    }
    if (line.size() >= 2 && line.size() <= 4 && line.endsWith('?')) {
        return numberOf(line) != 0 && (numberOf(line) & 0xFFFF) != 0
                   ? described(CommandInterpreter::Query, {numberOf(line)})
                   : described(CommandInterpreter::SyntaxError, {});
    }
    return naiveRoute(line);
}

QByteArray randomLine(std::mt19937 &random)
{
    static const char *const pieces[] = {
        "1",      "2",       "12",  "160", "0",    "65536", "65537",  "99999999999999999999",
        "x",      "X",       "*",   "v",   "o",    "b",     "B",      "&",
        ",",      "?",       "all", "ALL", "all1", "save",  "recall", "temp",
        "beepon", "beepoff", ">s",  ">r",  ">c",   "0m",    "0M",     " ",
        "\t",     "-",       "+",   "\n",  "q",    ">",     "Beep",   "7",
        "3x1&4",  "\xEB"};
    QByteArray line;
    for (unsigned left = random() % 7; left > 0; --left) {
        line += pieces[random() % std::size(pieces)];
    }
    return line;
}
} // namespace

/// The parser, above all beside a naive one.
class TestCommandGrammar : public QObject
{
    Q_OBJECT

private slots:
    void randomLinesMeanWhatTheNaiveParserReads()
    {
        const unsigned seed = std::random_device()();
        std::mt19937 random(seed);
        for (int i = 0; i < 100000; ++i) {
            const QByteArray line = randomLine(random);
            const int cut = int(random() % unsigned(line.size() + 1)); // what is behind it does not count
            for (const int size : {line.size(), cut}) {
                const QByteArray found = meaning(line, size);
                const QByteArray expected = naive(line.left(size));
                const QByteArray message = "seed " + QByteArray::number(seed) + ": \"" + line.left(size) +
                                           "\" is " + found + ", not " + expected;
                QVERIFY2(found == expected, message.constData());
            }
        }
    }

    void aBlockIsItsLines()
    {
        const unsigned seed = std::random_device()();
        std::mt19937 random(seed);
        for (int i = 0; i < 20000; ++i) {
            QByteArray block;
            QByteArray expected;
            for (int line = 0; line < 4; ++line) {
                const QByteArray text = randomLine(random).replace('\n', ' ');
                block += text + "!.$%\r\n"[random() % 6];
                expected += naive(text) + ";";
            }
            QByteArray got;
            const char *at = block.constData();
            for (const char *end = at + block.size(); at != end; ++at) {
                const CommandInterpreter command(at, end, CommandText::NetworkEnd);
                got += described(command) + ";";
                at = command.end();
            }
            QVERIFY2(got == expected, "seed " + QByteArray::number(seed) + ": " + block);
        }
    }
};

static const RegisteredTest<TestCommandGrammar> registered;
#include "testcommandgrammar.moc"
