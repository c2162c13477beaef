#include "panelunit.h"
#include "startbitmap.h"
#include "testregistry.h"

#include <QTest>

namespace
{
bool isAt(Page page, int id, int x, int y, int width, int height)
{
    const GUI_Rect rect = WM_GetWindowRect(WM_GetDialogItem(hWin[page], id));
    return rect.x0 == x && rect.y0 == y && rect.x1 == x + width - 1 && rect.y1 == y + height - 1;
}
} // namespace

/// Where things are on the LCD, and its start picture.
class TestPages : public QObject
{
    Q_OBJECT

private slots:
    void widgetsAreInTheirPlaces()
    {
        PanelUnit unit(40);
        for (int i = 0; i < 40; ++i) {
            QVERIFY(isAt(SwitchPage, 2000 + i, i % 8 * 16 + 1, 12 + i / 8 * 10 + 2, 16, 10));
        }
        for (int i = 0; i < 20; ++i) {
            for (const Page page : {ViewPage, ScenePage}) {
                QVERIFY(isAt(page, 2000 + i, i % 4 * 33, 12 + i / 4 * 10 + 2, 32, 10));
            }
        }
        const int rows[] = {14, 22, 30, 40, 48, 56};
        for (int i = 0; i < 6; ++i) {
            QVERIFY(isAt(SetupPage, 2000 + i, 0, rows[i], 32, 8));
            QVERIFY(isAt(SetupPage, 3000 + i, 32, rows[i], 96, 8));
        }
        QCOMPARE(unit.texts(SetupPage, 0, 6), QByteArray("I P1:,MSK1:,G W1:,I P2:,MSK2:,G W2:"));
    }

    void startPictureIsWhereTheFrameIsBlack()
    {
        TestUnit unit;
        const auto lit = [](int x, int y) { return bmbmp_startup.data[128 * y + x] == 1; };
        QByteArray frame(131072, '\xFF');
        frame.replace(2048 * 63 + 2 * 127, 2, QByteArray(2, '\0'));
        frame.replace(2048 * 2 + 2 * 3, 6, QByteArray("\0\0\0\1\1\0", 6)); // only the first is black
        unit.writeFile("/dev/fb0", frame);
        loadStartBitmap();
        QVERIFY(lit(127, 63) && lit(3, 2) && !lit(4, 2) && !lit(5, 2) && !lit(0, 0));
        unit.writeFile("/dev/fb0", frame.left(2048 * 3));
        loadStartBitmap();
        QVERIFY(!lit(127, 63) && lit(3, 2));
        unit.hardware().removeFrameBuffer();
        loadStartBitmap();
        QVERIFY(!lit(3, 2));
    }
};

static const RegisteredTest<TestPages> registered;

#include "testpages.moc"
