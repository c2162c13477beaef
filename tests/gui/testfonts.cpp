#include "fontpictures.h"
#include "testdisplay.h"
#include "testregistry.h"

#include <QTest>

namespace
{
constexpr GUI_FontBand<3> Bands[] = {{'~',
                                      {"#.#.#..##.#. ##.", //
                                       ".#....#...#. ...", //
                                       "###..#...#.. .#."}}};
const GUI_Font Drawn = GUI_FontPictures<Bands>::Font;
} // namespace

/// What fonts are made of, and what the library's own look like.
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

    /// These pictures were looked at: each character but the two spaces, the two hyphens and the controls has
    /// its own, letters of a kind are equally high, digits equally wide, and accents leave the letter as it
    /// is. Who changes one looks at that again.
    void picturesAreAsLookedAt()
    {
        for (const auto &[font, sum] : {std::pair(&GUI_Font6x8, 12166), {&GUI_Font16, 21008}}) {
            QByteArray pictures;
            for (ushort code = 0; code <= 0xFF; ++code) {
                const GUI_Glyph &glyph = font->glyph(static_cast<unsigned char>(code));
                pictures += char(glyph.width);
                pictures.append(reinterpret_cast<const char *>(glyph.rows), font->height * font->rowBytes());
            }
            QCOMPARE(int(qChecksum(pictures.constData(), uint(pictures.size()))), sum);
        }
    }
};

static const RegisteredTest<TestFonts> registered;
#include "testfonts.moc"
