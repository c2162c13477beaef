#include "panelunit.h"
#include "testregistry.h"

#include <QTest>

/// The SETUP page: editing and saving the addresses.
class TestSetup : public QObject
{
    Q_OBJECT

private slots:
    void editing_data()
    {
        QTest::addColumn<QString>("actions");
        QTest::addColumn<int>("field");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("cursor"); // -1: the field has not got the focus
        QTest::newRow("shown with three digits") << "" << 0 << "192.168.000.080" << -1;
        QTest::newRow("right begins") << "right" << 0 << "192.168.000.080" << 0;
        QTest::newRow("left does not") << "left" << 0 << "192.168.000.080" << -1;
        QTest::newRow("edit again ends") << "edit in5 edit" << 0 << "592.168.000.080" << -1;
        QTest::newRow("digits without editing") << "in5 in10" << 0 << "192.168.000.080" << -1;
        QTest::newRow("digits run over the dots") << "edit in1 in10 in2 in3" << 0 << "102.368.000.080" << 5;
        QTest::newRow("other keys pass by") << "edit in11 out1 key1" << 0 << "191.168.000.080" << 4;
        QTest::newRow("left over a dot") << "edit in1 in1 in1 left" << 0 << "111.168.000.080" << 2;
        QTest::newRow("left at the first") << "edit left in7" << 0 << "792.168.000.080" << 1;
        QTest::newRow("into the next field")
            << "edit" + QString(" in1").repeated(12) + " in9" << 1 << "955.255.255.000" << 1;
        QTest::newRow("and back") << "edit" + QString(" in1").repeated(12) + " left in3" << 1
                                  << "255.255.255.000" << 0;
        QTest::newRow("the end is the end")
            << "edit " + QString("right ").repeated(71) + "right in7 in8" << 5 << "192.168.001.008" << 14;
        QTest::newRow("remote leaves and comes back")
            << "edit in5 ir2X menu menu in6" << 0 << "562.168.000.080" << 2;
        QTest::newRow("load brings back") << "edit in5 load" << 0 << "192.168.000.080" << -1;
    }

    void editing()
    {
        QFETCH(const QString, actions);
        QFETCH(const int, field);
        PanelUnit unit;
        unit.act("menu menu");
        unit.act(actions.toLatin1());
        QTEST(QString(unit.field(field)), "text");
        const WM_Handle edit = PanelUnit::edit(field);
        QTEST(WM_GetFocus() == edit ? EDIT_GetCursorCharPos(edit) : -1, "cursor");
    }

    void savingStoresWithoutLeadingZeros()
    {
        PanelUnit unit;
        unit.act("menu menu edit in10 in1 in10 right right in9");
        unit.step(113);
        QCOMPARE(unit.header(), QByteArray("SETUP|ip saved"));
        unit.step();
        QCOMPARE(unit.header(), QByteArray("SETUP|"));
        QVERIFY(WM_GetFocus() == hWin[StartPage]);
        QCOMPARE(unit.shm().eth0Address.get().text, "10.169.0.80");
        QCOMPARE(unit.shm().eth1Gateway.get().text, "192.168.1.1");
        unit.act("edit in2");
        unit.step(114);
        QCOMPARE(unit.header(), QByteArray("SETUP|ip loaded"));
        QCOMPARE(unit.field(0), QByteArray("010.169.000.080"));
    }

    void allFieldsAreSavedAndLoaded()
    {
        PanelUnit unit;
        for (int i = 0; i < SetupFields; ++i) {
            EDIT_SetText(PanelUnit::edit(i), "001.002.003.00" + QByteArray::number(i));
        }
        unit.act("menu menu save");
        const QByteArray files = unit.fileContent("/etc/eth0.conf") + unit.fileContent("/etc/eth1.conf");
        const char *const keys[] = {"ADDRESS", "NETMASK", "GATEWAY"};
        for (int i = 0; i < SetupFields; ++i) {
            const QByteArray line = QByteArray(keys[i % 3]) + "=1.2.3." + QByteArray::number(i) + "\n";
            QVERIFY2(files.contains(line), line.constData());
        }
        unit.act("edit in9 load");
        QCOMPARE(unit.field(5), QByteArray("001.002.003.005"));
    }

    void whatIsNoAddress_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::newRow("") << "192.168.000.080";
        QTest::newRow("...") << "000.000.000.000";
        QTest::newRow("a.2.-3.4.5") << "000.002.-03.004";
        QTest::newRow("1234.5.6.7") << "1234.005.006.00";
        QTest::newRow("10.0.0.1 ") << "010.000.000.001";
    }

    void whatIsNoAddress()
    {
        PanelUnit unit;
        unit.act("menu menu");
        unit.shm().eth1Netmask.set(QTest::currentDataTag());
        unit.act("load");
        QTEST(QString(unit.field(4)), "shown");
        EDIT_SetText(PanelUnit::edit(4), "1.2.3");
        unit.act("save");
        QCOMPARE(unit.shm().eth1Netmask.get().text, "192.168.0.80");
    }
};

static const RegisteredTest<TestSetup> registered;

#include "testsetup.moc"
