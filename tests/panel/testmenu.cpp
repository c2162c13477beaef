#include "panelunit.h"
#include "testregistry.h"

#include <QTest>

/// The menu by its keys: what the pages show, what is switched, what the LEDs are told.
class TestMenu : public QObject
{
    Q_OBJECT

private slots:
    void pagesFollowEachOtherAndThenDrawNothing()
    {
        PanelUnit unit(40);
        for (const auto &round : {QByteArrayList{"SWITCH|01>", "SCENE|1", "SETUP|", "VIEW|40x40"},
                                  QByteArrayList{"SWITCH|01>", "SCENE|1"}}) {
            unit.act("");
            for (const QByteArray &shown : round + round) { // the second time nothing but the page is new
                QCOMPARE(unit.header(), shown);
                for (int i = 0; i < 20; ++i) {
                    unit.step();
                    QVERIFY(i == 0 || WM_Exec() == 0);
                }
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
            {"switches off, and on", "in3 out1 out1 out2 out2 out2", "SWITCH|03>", "0,3,1,1"},
            {"all", "in4 left", "SWITCH|04>", "4,4,4,4"},
            {"none of this input", "in2 out1 out3 right", "SWITCH|02>", "0,1,0,1"},
            {"last keys of the matrix", "in4 out4 in5 out5 in45", "SWITCH|04>", "1,1,1,4"},
            {"keys without a use", "save load edit in0 in50 in91 in110 in117 in127", "SWITCH|01>"},
            {"VIEW takes no key but menu", "menu menu menu in2 out1 left right save load edit", "VIEW|4x4"},
            {"remote selects and toggles", "ir3X ir4N ir1N", "SWITCH|03>", "3,1,1,3"},
            {"remote out of range", "ir5X ir0X irX ir5N ir0N irN ir11R irR ir0S irS", "SWITCH|01>"},
            {"a letter empties the number", "ir3N irX ir2 irA irX", "SWITCH|02>", "1,1,0,1"},
            {"N has no effect elsewhere", "menu ir2N ir3 irX", "SWITCH|03>"},
            {"a 17th digit begins anew", "ir00000000000000003X ir00000000000000012X", "SWITCH|02>"},
            {"scenes are a round", "menu left right left", "SCENE|10"},
            {"scene by number", "menu in10 in11 in51 edit", "SCENE|10"},
            {"saved is kept over a step", "menu in3 save right", "SCENE|4 saved"},
            {"saved is not kept over a number", "menu in3 save in2", "SCENE|2"},
            {"loaded", "in2 left ir3S menu menu menu in4 left ir3R", "SCENE|3 loaded", "2,2,2,2"},
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

    void ledsAndIndicators()
    {
        PanelUnit unit(2);
        for (const auto &[words, leds, scene] : {std::tuple("", "008102b3b4", 0),
                                                 {"in2 out1 wait1", "", 0},
                                                 {"", "0182b334", 0},
                                                 {"menu", "00", 1},
                                                 {"wait6", "", 1},
                                                 {"", "0081", 1},
                                                 {"ir4S wait8", "0084", 1}}) {
            unit.act(words);
            QCOMPARE(unit.takeLeds(), QByteArray(leds));
            const auto shown = [&] {
                return std::pair(unit.hardware().gpio().level(9), unit.hardware().gpio().level(10));
            };
            const std::pair expected(scene, 1 - scene);
            QVERIFY(unit.hardware().waitFor([&] { return shown() == expected; }, 5000));
        }
    }

    /// SCENE and VIEW, after 3 s and after 5 s; they begin anew when they come up.
    void mapsOfMoreThan20PortsTakeTurns()
    {
        PanelUnit unit(25);
        unit.shm().sceneMap[1][20] = 6;
        for (const auto &[words, page, first, texts] :
             {std::tuple("in2 out2 in25 out25 in1 out3 menu", ScenePage, 17, "01>18,01>19,01>20"),
              {"wait298", ScenePage, 0, "01>01,01>02"},
              {"", ScenePage, 0, "07>21,01>22,01>23,01>24,01>25,"},
              {"in2", ScenePage, 0, "01>01"},
              {"menu menu", ViewPage, 0, "01>01,02>02,  >03"},
              {"wait498", ViewPage, 0, "01>01,02>02,  >03"},
              {"", ViewPage, 0, "01>21,01>22,01>23,01>24,25>25,,,,,,,,,,,,,,,"},
              {"wait499", ViewPage, 0, "01>01,02>02,  >03"},
              {"wait500 menu menu wait300 menu menu", ViewPage, 0, "01>01,02>02,  >03"},
              {"menu menu", ScenePage, 0, "01>01"}}) {
            unit.act(words);
            QCOMPARE(unit.texts(page, first, QByteArray(texts).count(',') + 1), QByteArray(texts));
        }
    }

    /// Other threads and processes write the record while a page is shown, and while it is not.
    void whatOthersChangeIsShown()
    {
        PanelUnit unit(8);
        MxShm &shm = unit.shm();
        shm.map[6] = 3;
        unit.step();
        QCOMPARE(unit.pressed(), QByteArray("1,2,3,4,5,6,8"));
        unit.act("menu");
        shm.sceneMap[1][7] = 4;
        shm.port = 10;
        unit.step();
        QCOMPARE(unit.texts(ScenePage, 6, 5), QByteArray("01>07,05>08,01>09,01>10,"));
        unit.act("menu menu");
        shm.port = 7;
        shm.map[0] = 6;
        shm.map[2] = 7; // no input of this matrix
        unit.step();
        QCOMPARE(unit.header(), QByteArray("VIEW|7x7"));
        QCOMPARE(unit.texts(ViewPage, 0, 8), QByteArray("07>01,01>02,  >03,01>04,01>05,01>06,04>07,01>08"));
        shm.map[1] = 6;
        unit.act("menu in7");
        QCOMPARE(unit.pressed(), QByteArray("1,2,8")); // what lies beyond the matrix stays as it was
    }
};

static const RegisteredTest<TestMenu> registered;

#include "testmenu.moc"
