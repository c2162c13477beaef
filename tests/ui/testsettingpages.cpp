#include "qmxhelp.h"
#include "qmxkeyboard.h"
#include "qmxsetup.h"
#include "qmxstatus.h"
#include "rows.h"
#include "testregistry.h"
#include "testunit.h"
#include "touchscreen.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Touchscreen;

namespace
{
const QString LowerSet = QStringLiteral("1234567890.|qwertyuiop-=asdfghjkl;[] zxcvbnm()");

/// A page with nothing but the keyboard, visible.
struct KeyboardPage : QWidget {
    KeyboardPage()
    {
        resize(1024, 505);
        show();
    }
    QMxKeyboard keyboard{this};
};

bool type(const QWidget &page, const QStringList &keys)
{
    return typeOn(*page.findChild<QMxKeyboard *>(), keys);
}

QString edited(const QWidget &page)
{
    return page.findChild<QLineEdit *>()->text();
}

/// The texts of the buttons that are checked.
QStringList chosen(const QWidget &page)
{
    QStringList texts;
    for (const QAbstractButton *each : buttons(page)) {
        texts += each->isChecked() ? QStringList(each->text()) : QStringList();
    }
    return texts;
}

bool unlock(QMxStatus &page, const char *password = "40617295")
{
    return touch(page, "Unlock") && type(page, letters(password) << "Enter") &&
           button(page, "Save")->isEnabled();
}
} // namespace

/// The pages of captions and settings, with the keyboard and the help.
class TestSettingPages : public QObject
{
    Q_OBJECT

private slots:
    void theKeysTypeWhatTheyShow()
    {
        KeyboardPage page;
        QMxKeyboard &keyboard = page.keyboard;
        QVERIFY(keyboard.isHidden());
        keyboard.showModal(nullptr, 100, QMxKeyboard::FreeText);
        QCOMPARE(misplaced(keyboard), QStringList());
        const QString upper = "1234567890.@QWERTYUIOP_+ASDFGHJKL:{} ZXCVBNM<>";
        for (const QString &set : {LowerSet, upper, LowerSet}) {
            for (const QChar key : set) {
                QVERIFY2(touch(keyboard, QString(key)), qPrintable(QString(key)));
            }
            QCOMPARE(edited(page), set);
            QVERIFY(touch(keyboard, "Capslock"));
            keyboard.showModal(nullptr, 100, QMxKeyboard::FreeText);
        }
        QVERIFY(touch(keyboard, "Capslock"));
        QVERIFY(type(page, {"a", "b", "c", "<<", "<<", "Backspace", "x", ">>", "y"}));
        QCOMPARE(edited(page), QString("xbyc"));
        for (const int id : {-1, 46, 99, INT_MAX, int(Qt::Key_F1)}) {
            keyboard.onKeyClicked(id);
        }
        QCOMPARE(edited(page), QString("xbyc"));
    }

    void modes_data()
    {
        const QString digits = QStringLiteral("1234567890");
        const QString address = digits + '.';
        columns<int, int, QString>("before", "mode", "keys");
        row("free text", 2, 0, LowerSet);
        row("number", 0, 1, digits);
        row("address", 0, 2, address);
        row("password behind free text", 0, 3, LowerSet);
        row("password behind an address", 2, 3, address);
        row("any other", 2, 77, LowerSet);
    }
    void modes()
    {
        QFETCH(int, before);
        QFETCH(int, mode);
        KeyboardPage page;
        QMxKeyboard &keyboard = page.keyboard;
        QPushButton target("192.168.0.80");
        auto *editor = page.findChild<QLineEdit *>();
        keyboard.showModal(nullptr, 15, before);
        keyboard.showModal(&target, 15, mode);
        QCOMPARE(keyboard.mode(), mode);
        QCOMPARE(editor->displayText().remove(' '),
                 mode == QMxKeyboard::Password ? QString(12, '*') : target.text());
        QString enabled;
        for (const QAbstractButton *key : buttons(keyboard)) {
            enabled += key->isEnabled() && key->text().size() == 1 ? key->text() : QString();
        }
        QTEST(enabled, "keys");
        editor->setText("1");
        editor->setCursorPosition(1);
        QVERIFY(type(page, letters(QString(20, '2'))));
        QCOMPARE(edited(page), mode == QMxKeyboard::Ipv4Address ? "122.222.222.222" : "122222222222222");
    }

    void aKeyTypesWhenTheFingerLeavesIt()
    {
        KeyboardPage page;
        page.keyboard.showModal(nullptr, 10, QMxKeyboard::FreeText);
        QAbstractButton *key = button(page, "q");
        QTest::mousePress(key, Qt::LeftButton);
        QCOMPARE(edited(page), QString());
        QMouseEvent slide(QEvent::MouseMove, QPointF(200, 10), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(key, &slide);
        QCOMPARE(edited(page), QString("q"));
    }

    void enterAndEscape()
    {
        KeyboardPage page;
        QMxKeyboard &keyboard = page.keyboard;
        QPushButton target("old");
        const QSignalSpy entered(&keyboard, &QMxKeyboard::onEnter);
        const QSignalSpy cancelled(&keyboard, &QMxKeyboard::onCancel);
        keyboard.showModal(&target, 4, QMxKeyboard::FreeText);
        QVERIFY(type(page, {"a", "b", "Esc"}));
        QCOMPARE(target.text(), QString("old"));
        QVERIFY(keyboard.isHidden() && cancelled.count() == 1 && entered.isEmpty());
        keyboard.showModal(&target, 4, QMxKeyboard::FreeText);
        QVERIFY(type(page, {"a", "b", "Enter"}));
        QCOMPARE(target.text(), QString("olda"));
        QVERIFY(keyboard.isHidden() && cancelled.count() == 1);
        QCOMPARE(entered.at(0).at(0).toString(), QString("olda"));
        keyboard.showModal(nullptr, 8, QMxKeyboard::Password);
        QVERIFY(type(page, {"7", "Enter"}));
        QCOMPARE(entered.at(1).at(0).toString(), QString("7"));
        QCOMPARE(target.text(), QString("olda"));
    }

    void theCaptionPageFits()
    {
        TestUnit unit(160, {{"system/scene", "40"}});
        unit.start(false);
        for (const auto &[ports, scenes] : {std::pair(2, 10), {8, 16}, {20, 40}, {160, 10}}) {
            unit.shm().port = ports;
            unit.shm().scene = scenes;
            unit.comm().MxCmdOneToAll(0x4141); // lies behind the captions of the scenes
            const auto page = open<QMxSetup>(unit);
            const QScrollArea *area = page->findChild<QScrollArea *>();
            for (const auto &[list, count] :
                 {std::pair("Input", ports), {"Output", ports}, {"Scene", scenes}}) {
                QVERIFY(touch(*page, list));
                QTRY_COMPARE(area->verticalScrollBar()->isVisible(), count > 32);
                QTRY_COMPARE(misplaced(*page), QStringList());
                QCOMPARE(buttons(*page).size(), 2 * count + 6);
                QVERIFY(!area->horizontalScrollBar()->isVisible());
            }
            for (const QAbstractButton *each : page->findChildren<QAbstractButton *>()) {
                QVERIFY(!each->text().contains('A'));
            }
        }
    }

    void captionsAreTypedAndStored()
    {
        TestUnit unit(8);
        const auto page = open<QMxSetup>(unit);
        const auto caption = [&] { return QByteArray(unit.shm().outputCaption[7].get().text); };
        QVERIFY(touch(*page, "Output") && touch(*page, "8"));
        QVERIFY(type(*page, {"Backspace", "Capslock", "T", "V", "Capslock", " ", "1", "Enter"}));
        QVERIFY(button(*page, "TV 1") != nullptr);
        QCOMPARE(caption(), QByteArray("8"));
        QVERIFY(touch(*page, "Load"));
        QVERIFY(button(*page, "TV 1") == nullptr);
        QVERIFY(touch(*page, "8") && type(*page, letters("1234567890123456") << "Enter"));
        QVERIFY(touch(*page, "Save"));
        const QByteArray longest = "8123456789012345";
        QCOMPARE(caption(), longest);
        QCOMPARE(unit.shm().inputCaption[7].get().text, "8");
        QVERIFY(unit.fileContent("/home/app/config/caption.ini").contains("output8=" + longest));
        QVERIFY(touch(*page, "Default") && button(*page, "8") != nullptr);
        page->setSaveEnabled(false);
        QVERIFY(touch(*page, "Save"));
        QCOMPARE(caption(), longest);
    }

    void theSettingsAreAppliedAndStored()
    {
        TestUnit unit(8, {{"system/backlight", "4"}, {"system/sleep", "3"}, {"system/beep", "1"}});
        const auto page = open<QMxStatus>(unit);
        QCOMPARE(misplaced(*page), QStringList());
        QCOMPARE(chosen(*page), QStringList({"100%", "30Min", "On"}));
        QVERIFY(touch(*page, "40%") && touch(*page, "Never") && touch(*page, "Off"));
        QCOMPARE(unit.hardware().files().backlight(), 2);
        QVERIFY(touch(*page, "192.168.0.80") && type(*page, {"Backspace", "Backspace", "7", "Enter"}));
        QCOMPARE(unit.shm().eth0Address.get().text, "192.168.0.80");
        QVERIFY(!unlock(*page, "40617296") && touch(*page, "Save"));
        QVERIFY(unit.fileContent("/etc/eth0.conf").isEmpty());
        QVERIFY(unlock(*page) && touch(*page, "Save") && button(*page, "Save")->isEnabled());
        QVERIFY(unit.fileContent("/etc/eth0.conf").contains("ADDRESS=192.168.0.7\n"));
        QVERIFY(unit.fileContent("/home/app/config/setup.ini").contains("backlight=1\nbeep=0\n"));
        QCOMPARE(unit.rises(4), 2);
    }

    void itIsLockedUntilThePasswordComes()
    {
        TestUnit unit(8);
        const auto page = open<QMxStatus>(unit);
        const auto isLocked = [&] { return !button(*page, "Save")->isEnabled(); };
        QVERIFY(isLocked());
        page->onEnter("40617295"); // typed where no password was asked for
        QVERIFY(isLocked());
        QVERIFY(touch(*page, "Unlock") && type(*page, letters("40617295") << "Esc"));
        QVERIFY(isLocked());
        QVERIFY(unlock(*page));
        QVERIFY(touch(*page, "Lock"));
        QVERIFY(isLocked());
    }

    void defaultsAndLoad()
    {
        TestUnit unit(8, {{"system/backlight", "4"}, {"system/sleep", "0"}});
        unit.writeFile("/etc/eth1.conf", "[IP]\nADDRESS=10.0.0.9\nNETMASK=255.0.0.0\nGATEWAY=10.0.0.1\n");
        const auto page = open<QMxStatus>(unit);
        QVERIFY(touch(*page, "Default"));
        QVERIFY(button(*page, "10.0.0.9") == nullptr && button(*page, "192.168.1.80") != nullptr);
        QCOMPARE(chosen(*page), QStringList({"60%", "15Min", "On"}));
        QCOMPARE(unit.shm().eth1Address.get().text, "10.0.0.9");
        QVERIFY(touch(*page, "Load"));
        QVERIFY(button(*page, "10.0.0.9") != nullptr);
        QVERIFY(button(*page, "100%")->isChecked() && button(*page, "1Min")->isChecked());
        QCOMPARE(unit.hardware().files().backlight(), 5);
    }

    void theButtonsShowWhatIsSo()
    {
        TestUnit unit(8);
        const auto page = open<QMxStatus>(unit);
        for (const auto &[backlight, sleep, beep, shown, light] : {std::tuple(4, 4, 1, "100% Never On", 5),
                                                                   {6, 2, 2, "15Min On", 7},
                                                                   {5, 5, -1, "On", 6},
                                                                   {7, INT_MIN, 0, "Off", 7},
                                                                   {-4, -1, 0, "Off", 7}}) {
            QVERIFY(touch(*page, "40%") && touch(*page, "30Min") && touch(*page, "Off"));
            QCOMPARE(chosen(*page), QStringList({"40%", "30Min", "Off"}));
            unit.shm().backlight = backlight;
            unit.shm().sleep = sleep;
            unit.shm().beep = beep;
            unit.comm().SaveConfig();
            QCOMPARE(chosen(*page).join(' '), QString(shown));
            QCOMPARE(int(unit.shm().beep), beep);
            QCOMPARE(unit.hardware().files().backlight(), light);
        }
    }

    void anyNumberInTheSettingsIsKept()
    {
        TestUnit unit(8, {{"system/backlight", "6"}, {"system/sleep", "-7"}, {"system/beep", "2147483647"}});
        const auto page = open<QMxStatus>(unit);
        for (const int id : {-1, 5, 6, 1000, INT_MIN}) {
            page->OnBlPressed(id);
            page->OnSleepPressed(id);
            page->OnBeepPressed(id);
            page->OnEthPressed(id < 0 ? id : id + 1);
            page->OnActPressed(id < 0 ? id : id + 1);
        }
        QCOMPARE(int(unit.shm().backlight), 6);
        QCOMPARE(int(unit.shm().sleep), -7);
        QCOMPARE(int(unit.shm().beep), INT_MAX);
        QVERIFY(page->findChild<QMxKeyboard *>()->isHidden());
        const auto setup = open<QMxSetup>(unit);
        unit.shm().port = 160;
        for (const int id : {-1, 3, 10, 160, INT_MAX, INT_MIN}) {
            setup->OnCapPressed(id == 3 ? 300 : id);
            setup->OnCapSelectPressed(id);
            setup->OnCapActionPressed(id);
        }
        QVERIFY(setup->findChild<QMxKeyboard *>()->isHidden());
        QVERIFY(unit.fileContent("/home/app/config/caption.ini").isEmpty());
    }

    void theStatusLine()
    {
        TestUnit unit(8);
        const auto page = open<QMxStatus>(unit);
        const auto *line = page->findChild<QLabel *>("labelStatus");
        const auto shown = [&](int uptime, const char *sensor) {
            unit.shm().uptime = uptime;
            const sim::Result set = unit.hardware().files().setTemperature(sensor);
            tick(*page);
            return set.isDone() ? line->text() : set.failure;
        };
        QCOMPARE(line->text(), QString("0000 00:00:00 / 20C"));
        QCOMPARE(shown(90061, "45321\n"), QString("0001 01:01:01 / 45C / 115200"));
        QCOMPARE(shown(864000000, "9"), QString("10000 00:00:00 / 9C / 115200"));
        QFile::remove(unit.path("/sys/devices/virtual/thermal/thermal_zone0/temp"));
        tick(*page);
        QCOMPARE(line->text(), QString("10000 00:00:00 / C / 115200"));
        page->hide();
        QCOMPARE(shown(1, "45321\n"), QString("10000 00:00:00 / C / 115200"));
    }

    void theHelpTurnsItsPages()
    {
        TestUnit unit(8);
        const auto page = open<QMxStatus>(unit);
        auto &help = *page->findChild<QMxHelp *>();
        const int last = QDir("help/en").entryList(QDir::Files).size();
        const QRect part(0, 0, 1024, 400); // above the buttons
        const auto shows = [&](int number) {
            const QImage picture(QString("help/en/%1.png").arg(number));
            return help.grab(part).toImage().convertToFormat(picture.format()) == picture.copy(part);
        };
        QVERIFY(help.isHidden());
        QVERIFY(touch(*page, "Help") && shows(1));
        QCOMPARE(misplaced(help), QStringList());
        QVERIFY(touch(help, "<<") && shows(1));
        for (int number = 2; number <= last; ++number) {
            QVERIFY(touch(help, ">>") && shows(number));
        }
        QVERIFY(touch(help, ">>") && shows(last));
        QVERIFY(touch(help, "Return") && help.isHidden());
        QVERIFY(touch(*page, "Help") && shows(last));
        QVERIFY(touch(help, "<<") && shows(last - 1));
        help.OnActionPressed(3);
        help.OnActionPressed(-1);
        QVERIFY(shows(last - 1));
        unit.shm().language.set("none");
        help.show();
        QCOMPARE(colourAt(help, {500, 250}), QColor(Qt::white));
    }
};

static const RegisteredTest<TestSettingPages> registered;
#include "testsettingpages.moc"
