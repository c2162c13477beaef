#include "fontpictures.h"
#include "testdisplay.h"
#include "testregistry.h"

namespace
{
constexpr GUI_FontBand<3> Bands[] = {{'~',
                                      {"#.#.#..##.#. ##.", //
                                       ".#....#...#. ...", //
                                       "###..#...#.. .#."}}};
const GUI_Font Drawn = GUI_FontPictures<Bands>::Font;
} // namespace

/// What fonts are made of.
class TestFonts : public QObject
{
    Q_OBJECT

private slots:
    void picturesAreDrawn()
    {
        start();
        GUI_SetFont(&Drawn);
        GUI_DispStringAt("~a", 3, 2);
        COMPARE_DOTS(display.dots, dotsWhere([](int x, int y) {
                         return isWithin({3, 2, 17, 4}, x, y) &&
                                QByteArray(Bands[0].lines[y - 2]).replace(' ', "")[x - 3] == '#';
                     }));
    }

    void picturesAreChecked_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("isFine");
        QTest::newRow("fine") << int('}') << QByteArray(".. #..") << true;
        QTest::newRow("line too short") << int('}') << QByteArray(".. #.") << false;
        QTest::newRow("cells unlike") << int('}') << QByteArray("... #.") << false;
        QTest::newRow("no spacing") << int('}') << QByteArray(".# #..") << false;
        QTest::newRow("no dot") << int('}') << QByteArray(".. o..") << false;
        QTest::newRow("character drawn twice") << int('~') << QByteArray(".. #..") << false;
        QTest::newRow("no substitute") << 0x80 << QByteArray(".. #..") << false;
    }
    void picturesAreChecked()
    {
        QFETCH(int, first);
        QFETCH(QByteArray, line);
        const unsigned char second = first < GUI_FONT_SUBSTITUTE ? GUI_FONT_SUBSTITUTE : 0x90;
        const GUI_FontBand<2> bands[] = {{static_cast<unsigned char>(first), {"#. .#.", line}},
                                         {second, {"#.", "#."}}};
        const FontPictures::Measures cells = FontPictures::measure(bands);
        QTEST(FontPictures::areWellDrawn(bands) && cells.ascend && cells.haveSubstitute, "isFine");
    }

    void allOfLatin1HasPictures()
    {
        for (const GUI_Font *const font : {&GUI_Font6x8}) {
            for (int character = 0; character < 256; ++character) {
                const bool isPrinted = (character >= 0x20 && character < 0x7F) || character >= 0xA0;
                const GUI_Glyph &glyph = font->glyphs[character];
                QCOMPARE(glyph.rows != font->glyphs[GUI_FONT_SUBSTITUTE].rows, isPrinted);
                QVERIFY(glyph.width >= 1 && glyph.width <= font->width);
            }
        }
    }
};

static const RegisteredTest<TestFonts> registered;
#include "testfonts.moc"
