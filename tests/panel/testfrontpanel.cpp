#include "gui.h"
#include "product.h"
#include "testregistry.h"
#include "testunit.h"

#include <QImage>
#include <QTest>
#include <csignal>

constexpr int DeadlineMs = 10000;
const TestUnit::Settings WithPanel = {{"system/keypad", "1"}};

namespace
{
/// Whether a part of the LCD is dark exactly where the rule says so.
template <class Rule>
bool isDark(const sim::LcdModule &lcd, const GUI_Rect &area, Rule rule)
{
    bool same = true;
    for (int y = area.y0; y <= area.y1; ++y) {
        for (int x = area.x0; x <= area.x1; ++x) {
            same = same && lcd.isLit(x, y) == rule(x, y);
        }
    }
    return same;
}
} // namespace

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
            return isDark(m_hardware->lcd(), {0, 0, 127, 63},
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
        QVERIFY(holds([&] { return switchButton(1, "02"); }));
        type("5X1N");
        QVERIFY(shows("SWITCH", "05>"));
        QVERIFY(unit.boardShows({5, 3, 1, 1, 1, 1, 1, 1}));

        press(115);
        QVERIFY(shows("SCENE", "1"));
        press(112);
        press(113);
        QVERIFY(shows("SCENE", "2 saved"));
        QVERIFY(holds([&] { return mapButton(0, "05>01") && mapButton(1, "03>02"); }));

        press(115);
        QVERIFY(shows("SETUP", ""));
        QVERIFY(isDark(m_hardware->lcd(), {48, 0, 127, 13}, [](int x, int y) { // the frame of the status
            return y < 12 && (x == 48 || x == 127 || y == 0 || y == 11);
        }));
        for (const int key : {116, 10, 1, 10}) {
            press(key);
        }
        QVERIFY(holds([&] { return reads("010", {33, 14, 50, 21}); }));
        QVERIFY(m_hardware->lcd().isLit(32 + 1 + 4 * 6, 21)); // the cursor, on the next digit

        press(115);
        QVERIFY(shows("VIEW", "8x8"));
        QCOMPARE(unit.talk(sim::Wire::Control0, "0x2."), QByteArray("OK."));
        QVERIFY(holds([&] { return mapButton(1, "  >02"); }));
        type("5X");
        QVERIFY(shows("SWITCH", "05>"));
        QVERIFY(holds([&] { return switchButton(0, "01"); }));
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

    /// Whether this text and nothing else stands in the middle of a part of the LCD; `inverted` is light on
    /// dark.
    bool reads(const QByteArray &text, const GUI_Rect &area, bool inverted = false) const
    {
        const int width = GUI_Font6x8.width * text.size();
        const int height = GUI_Font6x8.height;
        const int left = (area.x0 + area.x1 + 1 - width) / 2;
        const int top = (area.y0 + area.y1 + 1 - height) / 2;
        return isDark(m_hardware->lcd(), area, [&](int x, int y) {
            if (x < left || x >= left + width || y < top || y >= top + height) {
                return inverted;
            }
            const auto character = static_cast<unsigned char>(text[(x - left) / GUI_Font6x8.width]);
            const int row = GUI_Font6x8.glyph(character).rows[y - top];
            return inverted != ((row & 0x80 >> (x - left) % GUI_Font6x8.width) != 0);
        });
    }

    /// Of the first row; `index` is 0-based.
    bool mapButton(int index, const char *text) const
    {
        return reads(text, {33 * index, 14, 33 * index + 31, 23});
    }

    /// As `mapButton`, of an output that shows the selected input.
    bool switchButton(int index, const char *text) const
    {
        return reads(text, {16 * index + 1, 14, 16 * index + 16, 23}, true);
    }

    bool shows(const char *title, const char *status) const
    {
        return holds([&] { return reads(title, {0, 0, 47, 11}, true) && reads(status, {49, 1, 126, 10}); });
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
