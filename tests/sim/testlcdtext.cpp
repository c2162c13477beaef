#include "lcdrecords.h"
#include "lcdtext.h"
#include "testregistry.h"

#include <QTest>

/// The LCD in the terminal.
class TestLcdText : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_lcd = sim::LcdModule();
        m_lcd.setResetLine(1, 0);
        m_text = sim::LcdText();
    }

    void pictureInBlocks()
    {
        feed(lcdOn() + lcdCorner(0xA5));
        m_text.look(m_lcd, 0);
        const QStringList lines = QString::fromStdString(m_text.look(m_lcd, 100)).split('\n');
        QCOMPARE(lines.size(), 34);
        QVERIFY(m_lcd.isLit(0, 0) && !m_lcd.isLit(1, 0) && m_lcd.isLit(7, 0));
        for (int line = 0; line < 32; ++line) {
            QString expected;
            for (int x = 0; x < 128; ++x) {
                expected += QString(" ▄▀█").at(m_lcd.isLit(x, 2 * line) * 2 + m_lcd.isLit(x, 2 * line + 1));
            }
            QCOMPARE(lines[line + 1], "│" + expected + "│");
        }
    }

    void onlyWhatIsSteadyAndNew()
    {
        QVERIFY(!sees(0) && !sees(1000)); // dark, as before
        feed(lcdOn() + lcdCorner(1));
        QVERIFY(!sees(2000) && !sees(2099));
        feed(lcdCorner(2));
        QVERIFY(!sees(2100) && !sees(2199));
        QVERIFY(sees(2200));
        feed(lcdCorner(3));
        QVERIFY(!sees(3000));
        feed(lcdCorner(2));
        QVERIFY(!sees(3050) && !sees(4000)); // back to what was told
        m_lcd.setResetLine(0, 0);
        QVERIFY(!sees(5000) && sees(5100));
    }

private:
    void feed(const QByteArray &records)
    {
        m_lcd.feed(reinterpret_cast<const uint8_t *>(records.constData()), size_t(records.size()), 0);
    }

    bool sees(int64_t nowMs) { return !m_text.look(m_lcd, nowMs).empty(); }

    sim::LcdModule m_lcd;
    sim::LcdText m_text;
};

static const RegisteredTest<TestLcdText> registered;

#include "testlcdtext.moc"
