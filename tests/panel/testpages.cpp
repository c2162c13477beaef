#include "panelunit.h"
#include "startbitmap.h"
#include "testregistry.h"

#include <QTest>

namespace
{
bool isAt(Page page, int id, int x, int y, int width, int height)
{
    const GUI_Rect rect = WM_GetWindowRect(WM_GetDialogItem(hWin[page], id));
    return rect.x0 == x && rect.y0 == y && rect.x1 == x + width - 1 && rect.y1 == y + height - 1;
}
} // namespace

/// Where things are on the LCD, its start picture, and the addresses of the SETUP page.
class TestPages : public QObject
{
    Q_OBJECT

private slots:
    void widgetsAreInTheirPlaces()
    {
        PanelUnit unit(40);
        const int rows[] = {14, 22, 30, 40, 48, 56};
        for (int i = 0; i < 40; ++i) {
            QVERIFY(isAt(SwitchPage, 2000 + i, i % 8 * 16 + 1, 12 + i / 8 * 10 + 2, 16, 10));
            for (const Page page : {ViewPage, ScenePage}) {
                QVERIFY(i >= 20 || isAt(page, 2000 + i, i % 4 * 33, 12 + i / 4 * 10 + 2, 32, 10));
            }
            QVERIFY(i >= 6 || isAt(SetupPage, 2000 + i, 0, rows[i], 32, 8));
            QVERIFY(i >= 6 || isAt(SetupPage, 3000 + i, 32, rows[i], 96, 8));
        }
        QCOMPARE(unit.texts(SwitchPage, 38, 2), QByteArray("39,40"));
        QCOMPARE(unit.texts(SetupPage, 0, 6), QByteArray("I P1:,MSK1:,G W1:,I P2:,MSK2:,G W2:"));
    }

    /// White is what cannot be read.
    void startPictureIsWhereTheFrameIsBlack()
    {
        TestUnit unit;
        const QByteArray row("\0\0\0\1\1\0", 6); // only its first dot is black
        unit.writeFile("/dev/fb0", QByteArray(2048, '\xFF') + row);
        loadStartBitmap();
        const unsigned char *dots = &bmbmp_startup.data[128];
        QVERIFY(dots[0] == 1 && dots[1] == 0 && dots[2] == 0 && dots[3] == 0);
        unit.hardware().removeFrameBuffer();
        loadStartBitmap();
        QVERIFY(dots[0] == 0);
    }

    void editing()
    {
        constexpr int NoCursor = -1; // the field has not got the focus
        const QByteArray field = QByteArray(" in1").repeated(12);
        PanelUnit unit;
        for (const auto &[actions, index, text, cursor] :
             {std::tuple<QByteArray, int, const char *, int>("", 0, "192.168.000.080", NoCursor),
              {"right", 0, "192.168.000.080", 0},
              {"edit in5 edit", 0, "592.168.000.080", NoCursor},
              {"left in5 in10", 0, "192.168.000.080", NoCursor},
              {"edit in1 in10 in2 in3", 0, "102.368.000.080", 5},
              {"edit in11 out1 in1 left", 0, "191.168.000.080", 2},
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
            const WM_Handle edited = setupField(index);
            QCOMPARE(WM_GetFocus() == edited ? EDIT_GetCursorCharPos(edited) : NoCursor, cursor);
        }
    }

    void allFieldsAreSavedAndLoaded()
    {
        PanelUnit unit;
        for (int i = 0; i < SetupFields; ++i) {
            EDIT_SetText(setupField(i), "001.002.030.00" + QByteArray::number(i));
        }
        unit.act("menu menu edit in10 in1");
        unit.step(113);
        QCOMPARE(unit.header(), QByteArray("SETUP|ip saved"));
        unit.step();
        QCOMPARE(unit.header(), QByteArray("SETUP|"));
        const QByteArray files = unit.fileContent("/etc/eth0.conf") + unit.fileContent("/etc/eth1.conf");
        for (const char *line : {"ADDRESS=11.2.30.0\n", "NETMASK=1.2.30.1\n", "GATEWAY=1.2.30.2\n",
                                 "ADDRESS=1.2.30.3\n", "NETMASK=1.2.30.4\n", "GATEWAY=1.2.30.5\n"}) {
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
            EDIT_SetText(setupField(4), "1.2.3");
            unit.act("save");
            QCOMPARE(unit.shm().eth1Netmask.get().text, "192.168.0.80");
        }
    }
};

static const RegisteredTest<TestPages> registered;

#include "testpages.moc"
