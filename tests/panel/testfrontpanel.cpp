#include "lcdreader.h"
#include "product.h"
#include "testregistry.h"
#include "testunit.h"

#include <QImage>
#include <QTest>
#include <csignal>

constexpr int DeadlineMs = 10000;
const TestUnit::Settings WithPanel = {{"system/keypad", "1"}};

/// The product, operated from its front panel: keys and the remote go in; what the LCD, the LEDs, the
/// switching board and the files show comes out.
class TestFrontPanel : public QObject
{
    Q_OBJECT

private slots:
    void walk()
    {
        TestUnit unit(8, WithPanel);
        m_hardware = &unit.hardware();
        Product product(true, QStringLiteral("linuxfb:tty=/dev/null:nographicsmodeswitch:fb=") +
                                  unit.path("/dev/fb0"));

        // The LCD begins with what the program has put on its screen.
        const QImage picture(QStringLiteral(PICTURES "/startup_lcd.png"));
        QCOMPARE(picture.size(), QSize(128, 64));
        QVERIFY(holds([&] {
            return lcdIsDark(m_hardware->lcd(),
                             [&](int x, int y) { return qGray(picture.pixel(x, y)) == 0; });
        }));
        QVERIFY(shows("SWITCH", "01>"));
        QVERIFY(lights({1, 51, 52, 58}) && !m_hardware->keys().isLit(2));

        // A frame is sent when it differs, and once.
        QVERIFY(ledsAreRefreshed(3));
        const uint64_t frames = m_hardware->lcd().frameCount();
        press(3);
        QVERIFY(shows("SWITCH", "03>") && ledsAreRefreshed(5));
        QCOMPARE(m_hardware->lcd().frameCount(), frames + 1);
        QVERIFY(lights({3}) && !m_hardware->keys().isLit(1) && !m_hardware->keys().isLit(51));
        press(52);
        QVERIFY(unit.boardShows({1, 3, 1, 1, 1, 1, 1, 1}));
        QVERIFY(lights({52}));
        QVERIFY(holds([&] { return switchButton(1) == "02"; }));
        type("5X1N");
        QVERIFY(shows("SWITCH", "05>"));
        QVERIFY(unit.boardShows({5, 3, 1, 1, 1, 1, 1, 1}));

        press(115);
        QVERIFY(shows("SCENE", "1"));
        press(112);
        press(113);
        QVERIFY(shows("SCENE", "2 saved"));
        QVERIFY(holds([&] { return mapButton(0) == "05>01" && mapButton(1) == "03>02"; }));

        press(115);
        QVERIFY(shows("SETUP", ""));
        for (const int key : {116, 10, 1, 10}) {
            press(key);
        }
        QVERIFY(holds([&] { return text({32, 14, 32 + 3 * 6, 21}) == "010"; }));
        QVERIFY(m_hardware->lcd().isLit(32 + 1 + 4 * 6, 21)); // the cursor, on the next digit

        press(115);
        QVERIFY(shows("VIEW", "8x8"));
        QCOMPARE(unit.talk(sim::Wire::Control0, "0x2."), QByteArray("OK."));
        QVERIFY(holds([&] { return mapButton(1) == ">02"; }));
        type("5X");
        QVERIFY(shows("SWITCH", "05>"));
        QVERIFY(holds([&] { return switchButton(0) == "01"; }));
        QCOMPARE(product.end(SIGTERM), 0);
        QCOMPARE(unit.faults(), QByteArray());
    }

    void aMissingDeviceIsNamed()
    {
        for (const auto &[wire, device] : {std::pair(sim::Wire::Infrared, "/dev/ttymxc0"),
                                           {sim::Wire::Keys, "/dev/ttymxc1"},
                                           {sim::Wire::Spi, "/dev/spidev2.0"}}) {
            TestUnit unit(8, WithPanel);
            unit.hardware().unplug(wire);
            Product product;
            QVERIFY(product.await("can't open file " + QByteArray(device) + "\n"));
            // It serves its other wires.
            QCOMPARE(unit.talk(sim::Wire::Control0, "1x1."), QByteArray("OK."));
            QCOMPARE(product.end(SIGTERM), 0);
        }
    }

private:
    bool holds(const std::function<bool()> &condition) const
    {
        return m_hardware->waitFor(condition, DeadlineMs);
    }

    void press(int key) const
    {
        m_hardware->pressKey(key);
        m_hardware->releaseKey(key);
    }

    void type(const char *characters) const
    {
        for (; *characters != '\0'; ++characters) {
            m_hardware->pressRemote(*characters);
        }
    }

    QByteArray text(const GUI_Rect &area, bool inverted = false) const
    {
        const sim::LcdModule lcd = m_hardware->lcd();
        return lcdText([&](int x, int y) { return lcd.isLit(x, y); }, area, inverted);
    }

    QByteArray mapButton(int index) const
    {
        const int x = index % 4 * 33;
        const int y = 14 + index / 4 * 10;
        return text({x, y, x + 31, y + 9});
    }

    /// Of an output that shows the selected input.
    QByteArray switchButton(int index) const
    {
        const int x = index % 8 * 16 + 1;
        const int y = 14 + index / 8 * 10;
        return text({x, y, std::min(x + 15, 127), y + 9}, true);
    }

    bool shows(const char *title, const char *status) const
    {
        return holds([&] { return text({1, 1, 46, 10}, true) == title && text({49, 1, 126, 10}) == status; });
    }

    bool lights(const std::vector<int> &keys) const
    {
        return holds([&] {
            const sim::KeyPanel panel = m_hardware->keys();
            return std::all_of(keys.begin(), keys.end(), [&](int key) { return panel.isLit(key); });
        });
    }

    /// Every 50 ms while the menu runs.
    bool ledsAreRefreshed(uint64_t times) const
    {
        const uint64_t bytes = m_hardware->keys().byteCount() + 16 * times;
        return holds([&] { return m_hardware->keys().byteCount() > bytes; });
    }

    sim::VirtualUnit *m_hardware = nullptr;
};

static const RegisteredTest<TestFrontPanel> registered;

#include "testfrontpanel.moc"
