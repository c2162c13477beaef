#include "guest.h"
#include "testregistry.h"

#include <QFile>
#include <QTest>

namespace
{
constexpr int Ports = 160;
constexpr char Frames[] = "/host/frames";

/// Since a cut in the storing of a frame's routing takes it away, but none later on.
constexpr int StoredMs = 300;

/// The input that is on every output.
std::vector<int> all(int input)
{
    return std::vector<int>(Ports, input);
}

/// How many steps the counter has made from one to the other, of those that are the fewest.
int steps(int from, int to)
{
    return (to - from + Ports + Ports / 2) % Ports - Ports / 2;
}
} // namespace

/// The routing is a counter, which goes up with every frame that the board gets and is on every output alike,
/// until the machine's keeper cuts the power.
class TestPowerCut : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (unitFiles().setting("system/port") != Ports) {
            QVERIFY(unitFiles().writeSettings({{"system/port", "160"}}).isDone());
            QCOMPARE(shell("sync; systemctl restart mxcontrol"), QByteArray());
        }
        QVERIFY(holdsWithin(60000, [] { return answer("1?.") != ""; }));
    }

    /// To the last frame's routing or the one before. The very last frame may not have been noted any more.
    void comesBack()
    {
        bool wasCut = false;
        const int cut = shell("cat /host/cut").toInt(&wasCut);
        QVERIFY(wasCut);
        QVERIFY(holdsWithin(10000, [] { return !g_unit->hardware().board().switchFrames().empty(); }));
        const std::vector<quint16> shown = g_unit->hardware().board().switchFrames().front().inputs;
        m_counter = shown.front() + 1;
        QVERIFY(shown == std::vector<quint16>(Ports, shown.front()));
        const int last = shell(QByteArray("tail -n 1 ") + Frames).toInt();
        const int ahead = steps(last, m_counter);
        qInfo("cut %d ms after frame %d: %s", cut, last,
              ahead == 0    ? "that one is back"
              : ahead == -1 ? "the one before is back"
                            : "another one is back");
        QVERIFY(ahead >= (cut > StoredMs ? 0 : -1) && ahead <= 1);
        QCOMPARE(g_unit->faults(), QByteArray());
    }

    void changesUntilTheCut()
    {
        QFile frames(QString::fromLatin1(Frames));
        QVERIFY(frames.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered));
        for (;;) {
            m_counter = m_counter % Ports + 1;
            const QByteArray counter = QByteArray::number(m_counter);
            QCOMPARE(answer(counter + "all."), QByteArray("OK."));
            QVERIFY(g_unit->boardShows(all(m_counter)));
            frames.write(counter + '\n');
        }
    }

private:
    int m_counter = 0;
};

static const RegisteredTest<TestPowerCut> registered;
#include "testpowercut.moc"
