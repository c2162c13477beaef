#include "commandinterpreter.h"
#include "commandtext.h"
#include "rows.h"
#include "testregistry.h"

#include <QByteArray>
#include <QTest>

namespace
{
/// What a line asks for, in words; inputs and outputs of a routing count from 0, as they are stored.
QByteArray described(const CommandInterpreter &command)
{
    static const char *const names[] = {"error",   "route",  "all ",        "one to one", "save ",
                                        "recall ", "query ", "temperature", "beep on",    "beep off"};
    QByteArray text = names[command.command()];
    if (text.endsWith(' ')) {
        text += QByteArray::number(command.number());
    } else if (command.command() == CommandInterpreter::RouteToSome) {
        text += " " + QByteArray::number(command.input());
        for (int i = 0; i < command.outputCount(); ++i) {
            text += " " + QByteArray::number(command.outputs()[i]);
        }
    }
    return text;
}
} // namespace

/// What the lines of the command language mean.
class TestCommandGrammar : public QObject
{
    Q_OBJECT

private slots:
    /// Lines of one meaning, with a bar between them.
    void lines_data()
    {
        columns<QByteArray, QByteArray>("lines", "meaning");
        row("separators", "1x2|1X2|1*2|1v2|1o2|1b2", "route 0 1");
        row("prefixes", "0m1x2|0M1x2|>c1x2|>C1x2|0m>c1x2", "route 0 1");
        row("numbers", "0000000001x02|65537x2|+1x 2|\t\v1x\f2|1q7x2z|1 1x2 2", "route 0 1");
        row("lists", "3x1&2,5|3x1,2&5|3x+1& 2,5q", "route 2 0 1 4");
        row("no output", "3x|3xq|3x0|3x ", "route 2 65535");
        row("no outputs", "3x&|3xq&0", "route 2 65535 65535");
        row("no input", "0x2|65536x2|-0x2|>c0m1x2", "route 65535 1");
        row("negative", "-1x-3", "route 65534 65532");
        // Beyond a long of 32 bits, as on a unit.
        row("beyond 32 bits", "4799999999x1", sizeof(long) == 4 ? "route 65534 0" : "route 12286 0");
        row("beyond any number", "98765432109876543210x1", "route 65534 0");
        row("far below any number", "-98765432109876543210x1", "route 65535 0");
        row("a list begun anew", "1x2x3|7x1&2x3", "route 1 2");
        row("to all", "4all|4ALL|04aLl| 4all|4qall|0m4all", "all 4");
        row("to all, largest", "999all", "all 999");
        row("all dark", "0all", "all 0");
        row("one to one", "all1|ALL1|0mall1", "one to one");
        row("save", "save7|SAVE 7|>s7|>S+7q|0msave7|save65543", "save 7");
        row("save without a number", "saveq|>s?|>sx", "save 0");
        row("recall", "recall7|ReCaLl07|>r7|>R 7|0m>r7", "recall 7");
        row("question", "2?|02?|002?| 2?|2q?|>c2?|>c02?|0m>c2?", "query 2");
        row("question, largest", "999?|>c999?", "query 999");
        row("words", "temp|TEMP|0mtemp", "temperature");
        row("beep on", "beepon|BeepOn", "beep on");
        row("beep off", "beepoff|0mbeepoff", "beep off");
        row("cut short", "|1|all|recall|recal1|save|>s|>r|>c|0m|beepo|beepof|tem|?|>c?|>?", "error");
        row("too long", "1234all|1000?|>c1000?|temp1|beeponn|all12|all1x2", "error");
        row("no number", "x1|qx1|5&1x2|-x1|1xx1|x|*|xall|qall|0?|q?|&1|1&2|5,1", "error");
        row("prefixes in the wrong place", ">c4all|>ctemp|>c>c1x2|m1x2|c1x2", "error");
    }
    void lines()
    {
        QFETCH(QByteArray, lines);
        QFETCH(QByteArray, meaning);
        for (const QByteArray &line : lines.split('|')) {
            // What is behind the end does not count, be the end a place or a terminator.
            for (const char *behind : {"", "9x9", "all", "?", "!7", ".9x9", "\r7", "\n7"}) {
                const QByteArray text = line + behind;
                const char *const end = text.constData() + line.size();
                const bool isTerminated = CommandText::is(*end, CommandText::NetworkEnd);
                const CommandInterpreter command(text.constData(), isTerminated ? end + 2 : end,
                                                 CommandText::NetworkEnd);
                QCOMPARE(line + ": " + described(command), line + ": " + meaning);
                QCOMPARE(int(command.end() - text.constData()), line.size());
            }
        }
    }
};

static const RegisteredTest<TestCommandGrammar> registered;
#include "testcommandgrammar.moc"
