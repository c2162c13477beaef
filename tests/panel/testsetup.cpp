#include "panelunit.h"
#include "testregistry.h"

#include <QTest>

/// The SETUP page: editing and saving the addresses.
class TestSetup : public QObject
{
    Q_OBJECT

private slots:
    void editing()
    {
        constexpr int NoCursor = -1; // the field has not got the focus
        const QByteArray field = QByteArray(" in1").repeated(12);
        PanelUnit unit;
        for (const auto &[actions, index, text, cursor] :
             {std::tuple<QByteArray, int, const char *, int>("", 0, "192.168.000.080", NoCursor),
              {"right", 0, "192.168.000.080", 0},
              {"left", 0, "192.168.000.080", NoCursor},
              {"edit in5 edit", 0, "592.168.000.080", NoCursor},
              {"in5 in10", 0, "192.168.000.080", NoCursor},
              {"edit in1 in10 in2 in3", 0, "102.368.000.080", 5},
              {"edit in11 out1 in1", 0, "191.168.000.080", 4},
              {"edit in1 in1 in1 left", 0, "111.168.000.080", 2},
              {"edit left in7", 0, "792.168.000.080", 1},
              {"edit" + field + " in9", 1, "955.255.255.000", 1},
              {"edit" + field + " left in3", 1, "255.255.255.000", 0},
              {"edit " + QByteArray("right ").repeated(71) + "right in7 in8", 5, "192.168.001.008", 14},
              {"edit in5 ir2X menu menu in6", 0, "562.168.000.080", 2},
              {"edit in5 load", 0, "192.168.000.080", NoCursor}}) {
            unit.restart();
            unit.act("menu menu");
            unit.act(actions);
            QCOMPARE(unit.field(index), QByteArray(text));
            const WM_Handle edit = PanelUnit::edit(index);
            QCOMPARE(WM_GetFocus() == edit ? EDIT_GetCursorCharPos(edit) : NoCursor, cursor);
        }
    }

    void allFieldsAreSavedAndLoaded()
    {
        PanelUnit unit;
        for (int i = 0; i < SetupFields; ++i) {
            EDIT_SetText(PanelUnit::edit(i), "001.002.030.00" + QByteArray::number(i));
        }
        unit.act("menu menu edit in10 in1");
        unit.step(113);
        QCOMPARE(unit.header(), QByteArray("SETUP|ip saved"));
        unit.step();
        QCOMPARE(unit.header(), QByteArray("SETUP|"));
        QVERIFY(WM_GetFocus() == hWin[StartPage]);
        QCOMPARE(unit.shm().eth0Address.get().text, "11.2.30.0");
        QCOMPARE(unit.shm().eth1Gateway.get().text, "1.2.30.5");
        const QByteArray files = unit.fileContent("/etc/eth0.conf") + unit.fileContent("/etc/eth1.conf");
        const char *const lines[] = {"ADDRESS=11.2.30.0\n", "NETMASK=1.2.30.1\n", "GATEWAY=1.2.30.2\n",
                                     "ADDRESS=1.2.30.3\n",  "NETMASK=1.2.30.4\n", "GATEWAY=1.2.30.5\n"};
        for (const char *const line : lines) {
            QVERIFY2(files.contains(line), line);
        }
        unit.act("edit in2");
        unit.step(114);
        QCOMPARE(unit.header(), QByteArray("SETUP|ip loaded"));
        QCOMPARE(unit.field(0), QByteArray("011.002.030.000"));
        QCOMPARE(unit.field(5), QByteArray("001.002.030.005"));
    }

    void whatIsNoAddress()
    {
        PanelUnit unit;
        for (const auto &[address, shown] : {std::pair("", "192.168.000.080"),
                                             {"...", "000.000.000.000"},
                                             {"a.2.-3.4.5", "000.002.-03.004"},
                                             {"1234.5.6.7", "1234.005.006.00"},
                                             {"10.0.0.1 ", "010.000.000.001"}}) {
            unit.restart();
            unit.act("menu menu");
            unit.shm().eth1Netmask.set(address);
            unit.act("load");
            QCOMPARE(unit.field(4), QByteArray(shown));
            EDIT_SetText(PanelUnit::edit(4), "1.2.3");
            unit.act("save");
            QCOMPARE(unit.shm().eth1Netmask.get().text, "192.168.0.80");
        }
    }
};

static const RegisteredTest<TestSetup> registered;

#include "testsetup.moc"
