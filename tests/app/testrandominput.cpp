#include "ask.h"
#include "clientturns.h"
#include "mxsite.h"
#include "qmxtcp.h"
#include "qmxudp.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>
#include <QUdpSocket>
#include <random>

using sim::Wire;

namespace
{
const QHostAddress Here(QHostAddress::LocalHost);

/// Bytes that are mostly wrong in ways that are nearly right.
struct Noise {
    std::mt19937 random;

    unsigned below(unsigned limit) { return static_cast<unsigned>(random()) % limit; }

    QByteArray bytes(int most)
    {
        QByteArray all;
        const int size = int(below(unsigned(most)));
        while (all.size() < size) {
            all += piece();
        }
        return all;
    }

    QByteArray piece()
    {
        static const char *const words[] = {"x",    "&",    ",",      "?",        ".",      "\r",     "!",
                                            "all",  "all1", "*",      "save",     ">s",     "r",      ">c",
                                            "temp", "0m",   "recall", "recal11.", "-",      "beepof", " ",
                                            "+",    "\n",   "%s",     "1x2.",     "3x1&4.", "9?."};
        switch (below(5)) {
        case 0:
            return QByteArray::number(below(4) > 0 ? below(200) : below(0xFFFFFFFF));
        case 1:
            return QByteArray(1, char(below(256)));
        case 2:
            return frame();
        default:
            return words[below(sizeof words / sizeof *words)];
        }
    }

    QByteArray frame()
    {
        const unsigned length = below(3) > 0 ? below(40) : below(0x10000);
        QByteArray all("\xEB\x90");
        all += char(length >> 8);
        all += char(length);
        for (unsigned i = 4; i < qMin(length, 600U); ++i) {
            all += below(4) > 0 ? char(0) : char(below(256));
        }
        return all;
    }
};

/// The segment without what commands may change.
QByteArray untouchable(const MxShm &shm)
{
    QByteArray all(reinterpret_cast<const char *>(&shm), SharedObjects::SegmentSize);
    auto &rest = *reinterpret_cast<MxShm *>(all.data());
    rest.beep = 0;
    rest.uptime = 0;
    rest.splicePending.take();
    for (int output = 0; output < portCount(shm); ++output) {
        rest.map[output] = 0;
        rest.spliceData[output] = 0;
        for (int scene = 0; scene <= sceneCount(shm); ++scene) {
            rest.sceneMap[scene][output] = 0;
        }
    }
    return all;
}
} // namespace

/// Seeded random bytes into every input of the program at once: links, network and queues. The program
/// goes on, and the record is as before but for what commands may change.
class TestRandomInput : public QObject
{
    Q_OBJECT

private slots:
    void survives_data()
    {
        columns<unsigned>("seed");
        row("one", 1U);
        row("two", 2U);
        row("three", 3U);
    }
    void survives()
    {
        QFETCH(unsigned, seed);
        Noise noise{std::mt19937(seed)};
        TestUnit unit(8);
        unit.start(true, atOnce);
        ClientTurns turns;
        turns.start();
        const QMxUdp udp(turns, nullptr);
        const QMxTcp tcp(turns, nullptr);
        QVERIFY(unit.talk(Wire::Control0, "9999?.") == "ERR."); // the control thread has opened what it needs
        const QByteArray before = untouchable(unit.shm());
        const int descriptors = openDescriptors();
        for (int round = 0; round < 150; ++round) {
            feed(unit, noise);
        }
        QVERIFY(everyWireAnswers(unit));
        QVERIFY(untouchable(unit.shm()) == before);
        QVERIFY(runUntil([&] { return openDescriptors() <= descriptors; }));
    }

private:
    static void feed(TestUnit &unit, Noise &noise)
    {
        for (const Wire wire : {Wire::Control0, Wire::Control1, Wire::Matrix, Wire::Keys, Wire::Infrared}) {
            unit.hardware().send(wire, noise.bytes(noise.below(10) > 0 ? 200 : 3000).toStdString());
            unit.hardware().takeReceived(wire);
        }
        sendRequest(noise.bytes(1000).left(1500));
        QUdpSocket datagrams;
        for (int i = 0; i < 8; ++i) {
            datagrams.writeDatagram(noise.bytes(300), Here, static_cast<quint16>(MxSite::udpPort() + i));
        }
        QTcpSocket client;
        client.connectToHost(Here, MxSite::tcpPort());
        client.write(noise.bytes(2000));
        runUntil([&] { return client.bytesToWrite() == 0; });
        if (noise.below(2) == 0) {
            client.abort();
        }
    }

    static bool everyWireAnswers(TestUnit &unit)
    {
        for (const Wire wire : {Wire::Control0, Wire::Control1}) {
            // Whatever was half said ends here: a frame of at most 4096 bytes, and a line.
            unit.hardware().send(wire, std::string(4200, '\0') + ".1all.1?.");
            std::string answers;
            const auto answered = [&] {
                return (answers += unit.hardware().takeReceived(wire)).find("1x1&2") != std::string::npos;
            };
            if (!unit.hardware().waitFor(answered, 20000)) {
                return false;
            }
        }
        bool all = askTcp("1x1") == "OK.";
        for (int i = 0; i < 8; ++i) {
            all = all && askUdp("1x1", i) == "OK.";
        }
        return all;
    }
};

static const RegisteredTest<TestRandomInput> registered;
#include "testrandominput.moc"
