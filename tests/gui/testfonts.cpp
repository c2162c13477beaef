#include "fontpictures.h"
#include "rows.h"
#include "testdisplay.h"
#include "testregistry.h"

#include <QMap>
#include <QTest>
#include <algorithm>

namespace
{
constexpr GUI_FontBand<3> Bands[] = {{'~',
                                      {"#.#.#..##.#. ##.", //
                                       ".#....#...#. ...", //
                                       "###..#...#.. .#."}}};
const GUI_Font Drawn = GUI_FontPictures<Bands>::Font;

/// Of a character from the top, leftmost dot in bit 15.
QVector<int> rowsOf(const GUI_Font &font, QChar character)
{
    const GUI_Glyph &glyph = font.glyph(static_cast<unsigned char>(character.unicode()));
    QVector<int> rows;
    for (const unsigned char *row = glyph.rows; rows.size() < font.height; row += font.rowBytes()) {
        rows.append(row[0] << 8 | (font.rowBytes() > 1 ? row[1] : 0));
    }
    return rows;
}

/// As `rowsOf`, in the large font, moved to the left edge: an accent that is wider than its letter moves it.
QVector<int> body(QChar character, int top, int bottom)
{
    QVector<int> rows = rowsOf(GUI_Font16, character).mid(top, bottom - top + 1);
    while (std::all_of(rows.begin(), rows.end(), [](int row) { return row < 0x8000; })) {
        std::transform(rows.begin(), rows.end(), rows.begin(), [](int row) { return row << 1; });
    }
    return rows;
}
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

    void picturesAreChecked_data()
    {
        columns<int, QByteArray, bool>("first", "line", "isFine");
        row("fine", int('}'), ".. #..", true);
        row("line too short", int('}'), ".. #.", false);
        row("line too long", int('}'), ".. #...", false);
        row("cells unlike", int('}'), "... #.", false);
        row("no spacing", int('}'), ".# #..", false);
        row("no dot", int('}'), ".. o..", false);
        row("character drawn twice", int('~'), ".. #..", false);
        row("no substitute", 0x80, ".. #..", false);
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

    /// But the two spaces, the two hyphens, and what cannot be printed.
    void everyCharacterHasItsOwnPicture()
    {
        for (const GUI_Font *const font : {&GUI_Font6x8, &GUI_Font16}) {
            QMap<QVector<int>, QString> charactersByPicture;
            QString controls;
            for (ushort code = 0; code <= 0xFF; ++code) {
                charactersByPicture[rowsOf(*font, code)] += QChar(code);
                controls += (code & 0x7F) < 0x20 || code == 0x7F ? QString(QChar(code)) : QString();
            }
            const QString spaces = QString::fromLatin1(" \xA0");
            QCOMPARE(charactersByPicture.value(QVector<int>(font->height)), spaces);
            QStringList shared;
            std::copy_if(charactersByPicture.begin(), charactersByPicture.end(), std::back_inserter(shared),
                         [](const QString &characters) { return characters.size() > 1; });
            shared.sort();
            QCOMPARE(shared, (QStringList{controls, spaces, QString::fromLatin1("-\xAD")}));
        }
    }

    void lettersOfAKindHaveTheSameHeight()
    {
        for (const auto &[characters, top, bottom] :
             {std::tuple("ABCDEFGHIJKLMNOPRSTUVWXYZÆÐØÞ0123456789", 2, 12),
              {"acemnorsuvwxzæø", 5, 12},
              {"bdfhklðß", 2, 12},
              {"gpqy", 5, 15},
              {"ÀÁÂÃÄÅÈÉÊËÌÍÎÏÑÒÓÔÕÖÙÚÛÜÝ", 0, 12},
              {"Ç", 2, 15}}) {
            for (const QChar character : QString(characters)) {
                const QVector<int> rows = rowsOf(GUI_Font16, character);
                const auto isLit = [](int row) { return row != 0; };
                const auto first = std::find_if(rows.begin(), rows.end(), isLit);
                const auto last = std::find_if(rows.rbegin(), rows.rend(), isLit);
                QVERIFY2(first - rows.begin() == top && rows.rend() - last - 1 == bottom,
                         qPrintable(QString(character)));
            }
        }
    }

    void digitsHaveOneWidth()
    {
        for (unsigned char digit = '1'; digit <= '9'; ++digit) {
            QCOMPARE(GUI_Font16.glyph(digit).width, GUI_Font16.glyph('0').width);
        }
    }

    /// A capital loses one of its straight rows to the accent.
    void accentsLeaveTheLetter()
    {
        for (ushort code = 0xC0; code <= 0xFF; ++code) {
            const QString parts = QString(QChar(code)).normalized(QString::NormalizationForm_D);
            const QChar base = parts.at(0);
            if (parts.size() > 1 && parts.at(1) != QChar(0x327) && base.isUpper()) {
                QCOMPARE(body(code, 3, 9), body(base, 2, 8));
                QCOMPARE(body(code, 10, 12), body(base, 10, 12));
            } else {
                QCOMPARE(body(code, 5, 12), body(base, 5, 12));
            }
        }
    }
};

static const RegisteredTest<TestFonts> registered;
#include "testfonts.moc"
