#include "qmxscene.h"
#include "qmxswitch.h"
#include "qmxwidget.h"
#include "testregistry.h"
#include "testunit.h"
#include "touchscreen.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Touchscreen;

namespace
{
/// The outputs that the page shows as carrying the selected input, 1-based. Captions are the numbers.
QString checkedOutputs(const QMxSwitch &page, int ports)
{
    QStringList outputs;
    for (int output = 1; output <= ports; ++output) {
        const QAbstractButton *each = button(page, QString::number(output), 1);
        outputs += each->isChecked() ? QStringList(each->text()) : QStringList();
    }
    return outputs.join(' ');
}

/// Where the lines of an input (1-based) begin in the map view of a small matrix.
QPoint lineStart(int ports, int input, int viewHeight = 485)
{
    return {40, (input - 1) * ((viewHeight - 1 - 17) / (ports - 1)) + 12};
}
} // namespace

/// The pages of the routing: switch and scene.
class TestRoutingPages : public QObject
{
    Q_OBJECT

private slots:
    void theSwitchPageFits()
    {
        const QSize large(155, 95), middle(105, 68), small(102, 46), least(75, 45);
        const struct {
            int ports;
            QSize size;
            int columns;
        } sizes[] = {{2, large, 2},  {10, large, 2}, {11, middle, 3}, {21, middle, 3},
                     {22, small, 4}, {40, small, 4}, {41, least, 5},  {160, least, 5}};
        TestUnit unit(160);
        unit.start(false);
        for (const auto &[ports, size, columns] : sizes) {
            unit.shm().port = ports;
            const auto page = open<QMxSwitch>(unit);
            QCOMPARE(misplaced(*page), QStringList());
            QCOMPARE(buttons(*page).size(), 2 * ports + 5);
            for (int area = 0; area < 2; ++area) {
                for (int i = 0; i < ports; ++i) {
                    const QPoint place(i % columns * (size.width() + 3), i / columns * (size.height() + 3));
                    QCOMPARE(button(*page, QString::number(i + 1), area)->geometry(),
                             QRect(QPoint(3, 3) + place, size));
                }
                const QScrollArea *scroll = page->findChildren<QScrollArea *>().at(area);
                QCOMPARE(scroll->verticalScrollBar()->isVisible(), ports == 160);
                QCOMPARE(scroll->verticalScrollBar()->singleStep(), 480);
                QVERIFY(!scroll->horizontalScrollBar()->isVisible());
            }
            QCOMPARE(button(*page, "1")->font().pixelSize(), ports > 40 ? 12 : -1);
            const auto *view = page->findChild<QMxWidget *>();
            QCOMPARE(view != nullptr, ports <= 21);
            QVERIFY(view == nullptr ||
                    (view->size() == QSize(200, 485) && page->rect().contains(view->geometry())));
        }
    }

    void touchesReachTheBoard()
    {
        RunningUnit unit(4);
        const auto page = open<QMxSwitch>(unit);
        page->selectInput(0);
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        QVERIFY(touch(*page, "3") && touch(*page, "2", 1) && touch(*page, "4", 1));
        QVERIFY(unit.boardShows({1, 3, 1, 3}));
        tick(*page);
        QCOMPARE(checkedOutputs(*page, 4), QString("2 4"));
        QCOMPARE(colourAt(*button(*page, "2", 1), {10, 10}), QColor(0x01AFF4));
        QCOMPARE(colourAt(*button(*page, "1", 1), {10, 10}), QColor(0x888888));
        QCOMPARE(colourAt(*page->findChild<QMxWidget *>(), lineStart(4, 3)), QMxWidget::lineColor(2));
        QVERIFY(touch(*page, "2", 1));
        QVERIFY(unit.boardShows({1, 0, 1, 3}));
        QCOMPARE(unit.talk(sim::Wire::Control0, "3x1."), QByteArray("OK."));
        tick(*page);
        QCOMPARE(checkedOutputs(*page, 4), QString("1 4"));
        QVERIFY(touch(*page, "1"));
        tick(*page);
        QCOMPARE(checkedOutputs(*page, 4), QString("3"));
        QCOMPARE(unit.faults(), QByteArray());
    }

    void theFiveActions()
    {
        TestUnit unit(4);
        const auto page = open<QMxSwitch>(unit);
        page->selectInput(1);
        const QSignalSpy scenes(page.get(), &QMxSwitch::scenesWanted);
        for (const auto &[action, map] :
             {std::pair(2, "1,2,3,4"), {1, "1,0,3,4"}, {0, "2,2,2,2"}, {3, "0,0,0,0"}, {4, "0,0,0,0"}}) {
            QVERIFY(touch(*page, QString(), action));
            QCOMPARE(unit.map(), QByteArray(map));
            QCOMPARE(scenes.count(), action == 4 ? 1 : 0);
        }
    }

    void withoutASelectionAnOutputIsTakenOff()
    {
        TestUnit unit(4);
        const auto page = open<QMxSwitch>(unit);
        unit.shm().map[2] = MxNoInput;
        tick(*page);
        QCOMPARE(checkedOutputs(*page, 4), QString());
        QVERIFY(touch(*page, "3", 1)); // it is dark already, but looks chosen until the next refresh
        QCOMPARE(checkedOutputs(*page, 4), QString("3"));
        tick(*page);
        QCOMPARE(checkedOutputs(*page, 4), QString());
        QVERIFY(touch(*page, "2", 1));
        QCOMPARE(unit.map(), QByteArray("1,0,0,1"));
    }

    void aHiddenPageRests()
    {
        TestUnit unit(4);
        const auto page = open<QMxSwitch>(unit);
        const auto scenes = open<QMxScene>(unit);
        auto *view = scenes->findChildren<QMxWidget *>().at(0);
        page->selectInput(0);
        tick(*page);
        tick(*scenes);
        page->hide();
        scenes->hide();
        unit.comm().MxCmdAllToNone();
        tick(*page);
        tick(*scenes);
        QCOMPARE(colourAt(*view, lineStart(4, 1, 495)), QMxWidget::lineColor(0));
        page->show();
        scenes->show();
        QCOMPARE(checkedOutputs(*page, 4), QString("1 2 3 4"));
        QVERIFY(runUntil([&] {
            return checkedOutputs(*page, 4).isEmpty() &&
                   colourAt(*view, lineStart(4, 1, 495)) != QMxWidget::lineColor(0);
        }));
    }

    void captionsAreShownAsTheyAre()
    {
        TestUnit unit(8);
        unit.makeFolder("/home/app/config");
        const auto page = open<QMxSwitch>(unit);
        const QImage before = page->findChildren<QScrollArea *>().at(0)->grab().toImage();
        const QByteArray name = "A&B \"100%s\" %1 \xFC\xDF\xFF 0123456789 0123456789";
        unit.shm().inputCaption[0].set(name);
        unit.shm().outputCaption[7].set("");
        emit unit.comm().OnLoadCaption();
        QAbstractButton *named = button(*page, QString::fromLatin1(name.left(31)));
        QVERIFY(named != nullptr);
        QVERIFY(button(*page, "2", 1) != nullptr); // nothing runs into the next caption
        QVERIFY(named->grab().toImage() != before.copy(named->geometry()));
        QTest::keyClick(page.get(), Qt::Key_B, Qt::AltModifier);
        QVERIFY(!named->isChecked());

        // An "&" is seen.
        named->setText("&");
        const QImage ampersand = named->grab().toImage();
        named->setText("");
        QVERIFY(named->grab().toImage() != ampersand);
    }

    void idsOutOfRangeAreIgnored()
    {
        TestUnit unit(8);
        const auto page = open<QMxSwitch>(unit);
        const auto scenes = open<QMxScene>(unit);
        page->selectInput(3);
        const QByteArray before = unit.map();
        for (const int id : {-1, 8, 160, 1024, 65536, 1 << 30, INT_MIN}) {
            page->selectInput(id);
            page->OnInputPressed(id);
            page->OnOutputPressed(id);
            page->OnActionPressed(id < 8 ? id : id + 5);
            scenes->OnScenePressed(id);
            scenes->OnSceneActionPressed(id);
        }
        QCOMPARE(unit.map(), before);
        QVERIFY(unit.fileContent("/home/app/data/scene1").isEmpty());
        unit.shm().port = 160; // by whoever: the page has buttons for 8
        tick(*page);
        page->OnLoadCaption();
        unit.shm().port = 2;
        tick(*page);
        tick(*scenes);
        page->OnOutputPressed(5);
        QCOMPARE(unit.map(), QByteArray("1,1"));
    }

    void theScenePageFits()
    {
        TestUnit unit(160, {{"system/scene", "40"}});
        unit.start(false);
        for (const int scenes : {10, 11, 15, 24, 25, 26, 40}) {
            unit.shm().scene = scenes;
            const auto page = open<QMxScene>(unit);
            QCOMPARE(misplaced(*page), QStringList());
            QCOMPARE(buttons(*page).size(), scenes + 2);
            for (int i = 0; i < scenes; ++i) {
                const QAbstractButton *scene = button(*page, QString::number(i + 1));
                QCOMPARE(scene->size(), QSize(115, scenes < 25 ? 50 : 48));
                QCOMPARE(scene->x(), button(*page, QString::number(i % 5 + 1))->x());
                QCOMPARE(scene->isChecked(), i == 0);
            }
            QCOMPARE(button(*page, "<< load")->size(), QSize(180, 65));
        }
    }

    void scenesAreSavedAndLoaded()
    {
        TestUnit unit(4);
        unit.start(true, [](unsigned long) {});
        QVERIFY(unit.boardShows({1, 1, 1, 1}));
        const auto page = open<QMxScene>(unit);
        const QList<QMxWidget *> views = page->findChildren<QMxWidget *>();
        unit.comm().MxCmdAllToAll();
        QVERIFY(touch(*page, "3") && touch(*page, "save >>"));
        QCOMPARE(unit.fileContent("/home/app/data/scene3"), QByteArray::fromHex("0000010002000300"));
        tick(*page);
        const auto shows = [&](int view, int input) {
            return colourAt(*views[view], lineStart(4, input, 495)) ==
                   QMxWidget::lineColor(quint16(input - 1));
        };
        QVERIFY(shows(0, 4) && shows(1, 4));
        QVERIFY(touch(*page, "1"));
        tick(*page);
        QVERIFY(shows(0, 4) && !shows(1, 4) && shows(1, 1));
        unit.comm().MxCmdAllToNone();
        tick(*page);
        QVERIFY(!shows(0, 4) && shows(1, 1));
        QVERIFY(touch(*page, "3") && touch(*page, "<< load"));
        QVERIFY(unit.boardShows({1, 2, 3, 4}));
        page->setSaveEnabled(false);
        QVERIFY(touch(*page, "10") && touch(*page, "save >>"));
        QVERIFY(unit.fileContent("/home/app/data/scene10").isEmpty());
    }
};

static const RegisteredTest<TestRoutingPages> registered;
#include "testroutingpages.moc"
