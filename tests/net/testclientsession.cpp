#include "clientsession.h"
#include "networkunit.h"
#include "rows.h"
#include "testregistry.h"

#include <QCoreApplication>
#include <QTest>

namespace
{
/// A client without a network: what it is sent is written down, behind its name.
class Session : public ClientSession
{
public:
    Session(ClientTurns &turns, QByteArray &log, const QByteArray &name = QByteArray())
        : ClientSession(turns)
        , m_log(log)
        , m_name(name)
    {
    }

    using ClientSession::isResting;

    /// Takes a piece of a text, of which more comes unless it is the last.
    void take(const QByteArray &piece, bool last = true)
    {
        receive(piece.constData(), piece.size(), last ? Final : Open);
        settle();
    }
    /// Gives it all turns that it needs.
    void finish() const
    {
        while (!isResting()) {
            QCoreApplication::processEvents();
        }
    }

protected:
    void sendReplies(const char *replies, int size) override { m_log += m_name + QByteArray(replies, size); }
    void sendBlock(const char *bytes, int size) override { m_log.append(bytes, size); }
    void onSettled() override {}

private:
    QByteArray &m_log;
    const QByteArray m_name;
};
} // namespace

/// What a client sends is cut into lines, wherever the network has cut it, and carried out in turns.
class TestClientSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_unit.reset(new TestUnit(8));
        m_unit->start(false, [this](unsigned long) { m_log += "|"; });
        m_turns.start();
    }
    void init() { m_log.clear(); }
    void cleanupTestCase() { m_unit.reset(); }

    void theLongestLine_data()
    {
        columns<int, QByteArray>("length", "replies");
        row("just fits", ClientSession::MaxBlock - 1, "OK.8x.");
        row("a byte too long", int(ClientSession::MaxBlock), "ERR.8x.");
    }
    void theLongestLine()
    {
        QFETCH(int, length);
        Session session(m_turns, m_log);
        session.take(QByteArray(length - 3, ' '), false);
        session.take("3x2", false);
        session.take("&4.8?");
        QTEST(m_log, "replies");
    }

    void aTurnHasAnEnd()
    {
        Session first(m_turns, m_log, "a ");
        Session second(m_turns, m_log, "b ");
        first.take(QByteArray("9?.").repeated(1025));
        second.take("9?");
        first.finish();
        QCOMPARE(m_log, "a " + QByteArray("ERR.").repeated(1024) + "b ERR.a ERR.");
    }

    /// Between them, and between commands of one client, is a turn of the event loop, here a space.
    void blockedClientsTakeTurns()
    {
        Session first(m_turns, m_log, "a");
        Session second(m_turns, m_log, "b");
        first.take(">r1.>r1.>r1");
        second.take(">r2.2x2.>r2");
        for (; !first.isResting(); m_log += " ") {
            QCoreApplication::processEvents();
        }
        QCOMPARE(m_log.trimmed(), QByteArray("|aOK.  |bOK. bOK. |aOK.  |bOK.  |aOK."));
    }

private:
    std::unique_ptr<TestUnit> m_unit;
    ClientTurns m_turns;
    QByteArray m_log; ///< replies, and a bar for each recall
};

static const RegisteredTest<TestClientSession> registered;
#include "testclientsession.moc"
