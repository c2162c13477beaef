#include "commandblock.h"
#include "testregistry.h"

#include <QTest>

/// Blocks of commands as they come over the network.
class TestCommandBlock : public QObject
{
    Q_OBJECT

private slots:
    void cut_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("lines");
        const auto row = [](const char *name, const QByteArray &bytes, const QByteArray &lines) {
            QTest::newRow(name) << bytes << lines;
        };
        row("nothing", "", "");
        row("only terminators", "..\r\n%$!", "");
        row("one without a terminator", "1x2", "[1x2]");
        row("one byte", "x", "[x]");
        row("each terminator", "1X2!3x4%5x6$7x8\r9x10\n11x12.", "[1x2][3x4][5x6][7x8][9x10][11x12]");
        row("empty lines between", "\r\n1x2\r\n\r\n3x4", "[1x2][3x4]");
        row("NUL is carried", QByteArray("1\0x2.3x4", 8), QByteArray("[1\0x2][3x4]", 11));
        row("longest", QByteArray(65535, 'A'), "[" + QByteArray(65535, 'a') + "]");
        row("too long is cut", QByteArray(65535, 'A') + "1x2.", "[" + QByteArray(65535, 'a') + "]");
    }

    void cut()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, lines);
        const QByteArray original(bytes.constData(), bytes.size());
        CommandBlock block(bytes);
        QByteArray found;
        while (block.next()) {
            QCOMPARE(block.line()[block.length()], '\0');
            found += "[" + QByteArray(block.line(), block.length()) + "]";
            std::fill(block.line(), block.line() + block.length(), '.'); // as an interpreter may
        }
        QCOMPARE(found, lines);
        QVERIFY(block.atEnd() && !block.next());
        QCOMPARE(bytes, original);
    }
};

static const RegisteredTest<TestCommandBlock> registered;
#include "testcommandblock.moc"
