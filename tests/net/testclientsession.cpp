#include "clientsession.h"
#include "networkunit.h"
#include "rows.h"
#include "testregistry.h"

#include <QCoreApplication>
#include <QTest>

namespace
{
/// A client without a network: what it sends comes from the test, and so do its pauses.
class Session : public ClientSession
{
public:
    using ClientSession::ClientSession;

    /// Takes a piece of a text, of which more comes unless it is the last, and all turns that it needs.
    void take(const QByteArray &piece, bool last = false)
    {
        receive(piece.constData(), piece.size(), last ? Final : Open);
        settle();
        while (!isResting()) {
            QCoreApplication::processEvents();
        }
    }

    QByteArray replies;

protected:
    void sendReplies(const char *bytes, int size) override { replies.append(bytes, size); }
    void sendBlock(const char *bytes, int size) override { replies += "[" + QByteArray(bytes, size) + "]"; }
    void onSettled() override {}
};
} // namespace

/// The cutting of what a client sends into lines, wherever the network has cut it into pieces.
class TestClientSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_unit.reset(new TestUnit(8));
        m_unit->start(false, [](unsigned long) {});
        m_turns.start();
    }
    void cleanupTestCase() { m_unit.reset(); }

    void anyCut_data()
    {
        columns<QByteArray, QByteArray>("text", "replies");
        row("no terminator", "2x3", "OK.");
        row("each terminator", "1X1.1x2!1x3$1x4%1x5\r1x6\n1x7\r\n", "OK.OK.OK.OK.OK.OK.OK.");
        row("empty lines", "\r\n..1x2.\n.", "OK.");
        row("NUL is carried", QByteArray("1\0x2.3x1", 8), "OK.OK.");
        row("a number in two", "0all.12345x1.3x1&4.3?.2?", "OK.OK.OK.3x1&4.2x.");
        row("errors", "bad.0x..9?.temp", "ERR.OK.ERR.ERR.");
        row("commands that block", "4all.>r1.1?.recall9.4x8.4?", "OK.OK.1x1&2&3&4&5&6&7&8.OK.OK.4x8.");
        row("more than a turn", QByteArray("9?.").repeated(1025), QByteArray("ERR.").repeated(1025));
    }
    void anyCut()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, replies);
        const int step = qMax(1, text.size() / 50);
        for (int cut = 0; cut <= text.size(); cut += step) {
            Session inTwo(m_turns);
            inTwo.take(text.left(cut));
            inTwo.take(text.mid(cut), true);
            QCOMPARE(inTwo.replies, replies);
        }
        Session byteByByte(m_turns);
        for (const char byte : text) {
            byteByByte.take(QByteArray(1, byte));
        }
        byteByByte.take(QByteArray(), true);
        QCOMPARE(byteByByte.replies, replies);
    }

    void theLongestLine_data()
    {
        columns<int, QByteArray>("length", "replies");
        row("fits", ClientSession::MaxBlock - 1, "OK.8x.");
        row("does not", ClientSession::MaxBlock, "ERR.8x.");
    }
    void theLongestLine()
    {
        QFETCH(int, length);
        Session session(m_turns);
        session.take(QByteArray(length - 3, ' '));
        session.take("3x2");
        session.take("&4.8?", true);
        QTEST(session.replies, "replies");
    }

private:
    std::unique_ptr<TestUnit> m_unit;
    ClientTurns m_turns;
};

static const RegisteredTest<TestClientSession> registered;
#include "testclientsession.moc"
