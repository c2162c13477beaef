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
        const auto press = [&](int key) {
            m_hardware->pressKey(key);
            m_hardware->releaseKey(key);
        };
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
        QVERIFY(holds([&] { return m_hardware->keys().isLit(58) && !m_hardware->keys().isLit(2); }));

        // A frame is sent when it differs, and once.
        QVERIFY(ledsAreRefreshed(3));
        const uint64_t frames = m_hardware->lcd().frameCount();
        press(3);
        QVERIFY(shows("SWITCH", "03>") && ledsAreRefreshed(5));
        QCOMPARE(m_hardware->lcd().frameCount(), frames + 1);
        QVERIFY(m_hardware->keys().isLit(3) && !m_hardware->keys().isLit(1));

        const struct {
            std::vector<int> keys;
            QByteArray remote;
            const char *title, *status, *part;
            GUI_Rect area; ///< of the part
        } steps[] = {
            {{52}, "", "SWITCH", "03>", "02", {17, 14, 32, 23}},
            {{}, "5X1N", "SWITCH", "05>", "01", {1, 14, 16, 23}},
            {{115, 112, 113}, "", "SCENE", "2 saved", "05>01", {0, 14, 31, 23}},
            {{115, 116, 10, 1, 10}, "", "SETUP", "", "010", {33, 14, 50, 21}},
            {{115}, "", "VIEW", "8x8", "03>02", {33, 14, 64, 23}},
        };
        for (const auto &step : steps) {
            std::for_each(step.keys.begin(), step.keys.end(), press);
            for (const char character : step.remote) {
                m_hardware->pressRemote(character);
            }
            QVERIFY2(shows(step.title, step.status, step.part, step.area), step.part);
        }
        QVERIFY(unit.boardShows({5, 3, 1, 1, 1, 1, 1, 1}));
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

    /// A page's header, and a part of the page; outputs that show the selected input are inverted.
    bool shows(const QByteArray &title, const char *status, const char *part = "",
               const GUI_Rect &area = {0, 0, -1, -1}) const
    {
        return holds([&] {
            return reads(title, {0, 0, 47, 11}, true) && reads(status, {49, 1, 126, 10}) &&
                   reads(part, area, title == "SWITCH");
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
