#include "panelunit.h"
#include "testregistry.h"

#include <QTest>

/// The menu by its keys: what the pages show, what is switched, what the LEDs are told.
class TestMenu : public QObject
{
    Q_OBJECT

private slots:
    void pagesFollowEachOther()
    {
        PanelUnit unit(8);
        for (const auto &round : {QByteArrayList{"SWITCH|01>", "SCENE|1", "SETUP|", "VIEW|8x8"},
                                  QByteArrayList{"SWITCH|01>", "SCENE|1"}}) {
            unit.step();
            for (const QByteArray &shown : round + round) { // the second time nothing but the page is new
                QCOMPARE(unit.header(), shown);
                unit.act("menu");
            }
            unit.shm().keypad = 2; // without SETUP
        }
    }

    void keys()
    {
        const struct {
            const char *what, *actions, *header, *map = "1,1,1,1";
        } rows[] = {
            {"switches off an output of the input", "in3 out2 out2", "SWITCH|03>", "1,0,1,1"},
            {"and on again", "in3 out2 out2 out2", "SWITCH|03>", "1,3,1,1"},
            {"all", "in4 left", "SWITCH|04>", "4,4,4,4"},
            {"none of this input", "in2 out1 out3 right", "SWITCH|02>", "0,1,0,1"},
            {"last keys of the matrix", "in4 out4 in5 out5 in45", "SWITCH|04>", "1,1,1,4"},
            {"keys without a use", "save load edit in0 in50 in91 in110 in117 in127", "SWITCH|01>"},
            {"VIEW takes no key but menu", "menu menu menu in2 out1 left right save load edit", "VIEW|4x4"},
            {"remote selects and toggles", "ir3X ir4N ir1N", "SWITCH|03>", "3,1,1,3"},
            {"remote out of range", "ir5X ir0X irX ir5N ir0N irN ir11R irR ir0S irS", "SWITCH|01>"},
            {"a letter empties the number", "ir3N irX ir2 irA irX", "SWITCH|02>", "1,1,0,1"},
            {"N has no effect elsewhere", "menu ir2N ir3 irX", "SWITCH|03>"},
            {"remote leaves SETUP", "menu menu ir2X", "SWITCH|02>"},
            {"a 17th digit begins anew", "ir00000000000000003X ir00000000000000012X", "SWITCH|02>"},
            {"16 digits are one number", "ir0000000000000004X ir9999999999999999X", "SWITCH|04>"},
            {"previous scene of the first", "menu left", "SCENE|10"},
            {"next scene of the last", "menu in10 right", "SCENE|1"},
            {"scene by number", "menu in10 in11 in51 edit", "SCENE|10"},
            {"saved, kept over a step, not over a number", "menu in3 save right", "SCENE|4 saved"},
            {"a number forgets saved", "menu in3 save in2", "SCENE|2"},
            {"remote saves", "ir7S", "SCENE|7 saved"},
            {"loaded", "in2 left menu in3 save menu menu menu in4 left ir3R", "SCENE|3 loaded", "2,2,2,2"},
        };
        PanelUnit unit(4);
        for (const auto &[what, actions, header, map] : rows) {
            unit.restart();
            unit.act(actions);
            QCOMPARE(what + unit.header(), what + QByteArray(header));
            QCOMPARE(what + unit.map(), what + QByteArray(map));
        }
        QCOMPARE(unit.faults(), QByteArray());
    }

    void aKeyOfTheBoardStandsUnlessTheRemoteHasACommand()
    {
        PanelUnit unit(4);
        unit.step(2, '3');
        unit.step(53, 'N'); // output 3 off by the remote, not by the key
        unit.step(1, 'Q');
        unit.step();
        QCOMPARE(unit.header(), QByteArray("SWITCH|01>"));
        QCOMPARE(unit.map(), QByteArray("1,1,2,1"));
    }

    void switchPageShowsTheSelectedInputsOutputs()
    {
        PanelUnit unit(40);
        QCOMPARE(unit.texts(SwitchPage, 38, 2), QByteArray("39,40"));
        unit.act("in39 out40 out1");
        QCOMPARE(unit.pressed(), QByteArray("1,40"));
        unit.act("in1");
        QCOMPARE(unit.pressed().left(5), QByteArray("2,3,4"));
        QCOMPARE(unit.pressed().right(5), QByteArray("38,39"));
    }

    void ledsAndIndicators()
    {
        PanelUnit unit(2);
        unit.step();
        QCOMPARE(unit.takeLeds(), QByteArray("008102b3b4"));
        unit.act("in2 out1 wait1");
        QCOMPARE(unit.takeLeds(), QByteArray());
        unit.step();
        QCOMPARE(unit.takeLeds(), QByteArray("0182b334"));
        const sim::VirtualUnit &hardware = unit.hardware();
        const auto indicators = [&](int scene, int onSwitch) {
            const auto shown = [&] { return std::pair(hardware.gpio().level(9), hardware.gpio().level(10)); };
            return hardware.waitFor([&] { return shown() == std::pair(scene, onSwitch); }, 5000);
        };
        QVERIFY(indicators(0, 1));
        unit.act("menu");
        QCOMPARE(unit.takeLeds(), QByteArray("00"));
        QVERIFY(indicators(1, 0));
        unit.act("wait6");
        QCOMPARE(unit.takeLeds(), QByteArray());
        unit.step();
        QCOMPARE(unit.takeLeds(), QByteArray("0081"));
        for (const auto &[words, led] : {std::pair("right", "0082"), {"in9", "0089"}, {"ir4S", "0084"}}) {
            unit.act(words + QByteArray(" wait9"));
            QCOMPARE(unit.takeLeds().left(4), QByteArray(led));
        }
        unit.act("menu wait50");
        QCOMPARE(unit.takeLeds(), QByteArray("00"));
    }

    void mapsOfMoreThan20PortsTakeTurns()
    {
        PanelUnit unit(25);
        const QByteArray first = "01>01,02>02,  >03";
        const QByteArray second = "01>21,01>22,01>23,01>24,25>25,,,,,,,,,,,,,,,";
        unit.act("in2 out2 in25 out25 in1 out3 menu");
        QCOMPARE(unit.texts(ScenePage, 17, 3), QByteArray("01>18,01>19,01>20"));
        unit.shm().sceneMap[1][20] = 6;
        unit.act("wait298");
        QCOMPARE(unit.texts(ScenePage, 0, 2), QByteArray("01>01,01>02"));
        unit.step();
        QCOMPARE(unit.texts(ScenePage, 0, 6), QByteArray("07>21,01>22,01>23,01>24,01>25,"));
        unit.act("in2");
        QCOMPARE(unit.texts(ScenePage, 0, 1), QByteArray("01>01"));

        unit.act("menu menu");
        QCOMPARE(unit.texts(ViewPage, 0, 3), first);
        unit.act("wait498");
        QCOMPARE(unit.texts(ViewPage, 0, 3), first);
        unit.step();
        QCOMPARE(unit.texts(ViewPage, 0, 20), second);
        unit.act("wait499");
        QCOMPARE(unit.texts(ViewPage, 0, 3), first);

        unit.act("wait500 menu menu wait300"); // both show their second half, and begin anew
        unit.act("menu menu");
        QCOMPARE(unit.texts(ViewPage, 0, 3), first);
        unit.act("menu menu");
        QCOMPARE(unit.texts(ScenePage, 0, 1), QByteArray("01>01"));
    }

    /// Other threads and processes write the record while a page is shown, and while it is not.
    void whatOthersChangeIsShown()
    {
        PanelUnit unit(8);
        unit.shm().map[6] = 3;
        unit.step();
        QCOMPARE(unit.pressed(), QByteArray("1,2,3,4,5,6,8"));
        unit.act("menu");
        unit.shm().sceneMap[1][7] = 4;
        unit.step();
        QCOMPARE(unit.texts(ScenePage, 6, 4), QByteArray("01>07,05>08,,"));
        unit.shm().port = 10;
        unit.step();
        QCOMPARE(unit.texts(ScenePage, 6, 4), QByteArray("01>07,05>08,01>09,01>10"));
        unit.act("menu menu");
        QCOMPARE(unit.header(), QByteArray("VIEW|10x10"));
        unit.shm().port = 7;
        unit.shm().map[0] = 6;
        unit.shm().map[2] = 7; // no input of this matrix
        unit.step();
        QCOMPARE(unit.header(), QByteArray("VIEW|7x7"));
        QCOMPARE(unit.texts(ViewPage, 0, 8), QByteArray("07>01,01>02,  >03,01>04,01>05,01>06,04>07,01>08"));
        unit.shm().map[1] = 6;
        unit.act("menu in7");
        QCOMPARE(unit.pressed(), QByteArray("1,2,8")); // what lies beyond the matrix stays as it was
    }

    void anIdleCycleDrawsNothing()
    {
        PanelUnit unit(40);
        for (const char *page : {"", "menu", "menu", "menu"}) {
            unit.act(page);
            WM_Exec();
            for (int i = 0; i < 20; ++i) {
                unit.step();
                QCOMPARE(WM_Exec(), 0);
            }
        }
    }
};

static const RegisteredTest<TestMenu> registered;

#include "testmenu.moc"
