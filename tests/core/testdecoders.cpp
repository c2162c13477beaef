#include "framedecoder.h"
#include "lineassembler.h"
#include "rows.h"
#include "testregistry.h"

#include <QTest>

namespace
{
QByteArray framesIn(const QByteArray &bytes)
{
    FrameDecoder decoder;
    QByteArray frames;
    for (const char byte : bytes) {
        if (decoder.feed(static_cast<quint8>(byte))) {
            frames +=
                QByteArray::fromRawData(reinterpret_cast<const char *>(decoder.frame()), decoder.frameSize());
        }
    }
    return frames;
}

QByteArray linesIn(const QByteArray &bytes)
{
    LineAssembler assembler;
    QByteArray lines;
    for (const char byte : bytes) {
        if (assembler.feed(byte)) {
            lines += "[" + QByteArray(assembler.line(), assembler.length()) + "]";
        }
    }
    return lines;
}

QByteArray frame(int length, char last = 0)
{
    QByteArray bytes("\xEB\x90");
    bytes += static_cast<char>(length >> 8);
    bytes += static_cast<char>(length);
    return bytes + QByteArray(length - 5, '\x55') + last;
}
} // namespace

/// What every byte of a control port goes through: once as text, once as part of a frame.
class TestDecoders : public QObject
{
    Q_OBJECT

private slots:
    void frames_data()
    {
        columns<QByteArray, QByteArray>("bytes", "found");
        row("shortest whole frame", frame(5), frame(5));
        row("a frame within a frame", QByteArray::fromHex("EB90000A EB9000050000"),
            QByteArray::fromHex("EB90000A EB9000050000"));
        row("length 4096", frame(4096), frame(4096));
        row("end mark missing", frame(5, 1), "");
        row("length 4097", QByteArray::fromHex("EB901001"), "");
        row("lengths that end within the length",
            QByteArray::fromHex("EB90000000 EB90000100 EB90000200 EB900003FF EB90000400"),
            QByteArray::fromHex("EB9000"));
        row("EB EB 90 does not synchronise", QByteArray::fromHex("EBEB90000500"), "");
    }

    /// Each row alone, after garbage, and before a good frame, which must come through.
    void frames()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, found);
        const QByteArray good = QByteArray::fromHex("EB90000700AB00");
        QCOMPARE(framesIn(bytes), found);
        QCOMPARE(framesIn(QByteArray::fromHex("9000EB00EB9010FF") + bytes), found);
        QCOMPARE(framesIn(bytes + good), found + good);
    }

    void lines_data()
    {
        columns<QByteArray, QByteArray>("bytes", "lines");
        row("each terminator", "1x2.3x4!5x6$7x8%9x10\r", "[1x2][3x4][5x6][7x8][9x10]");
        row("no terminators", QByteArray("1\0x2\n.", 6), QByteArray("[1\0x2\n]", 7));
        row("4095 bytes", QByteArray(4095, 'a') + ".", "[" + QByteArray(4095, 'a') + "]");
        row("4096 bytes are dropped", QByteArray(4096, 'a') + "1x2..", "[1x2][]");
    }

    /// Each row alone, and behind a line that was too long.
    void lines()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, lines);
        QCOMPARE(linesIn(bytes), lines);
        QCOMPARE(linesIn(QByteArray(5000, 'z') + "." + bytes), "[" + QByteArray(904, 'z') + "]" + lines);
    }
};

static const RegisteredTest<TestDecoders> registered;
#include "testdecoders.moc"
