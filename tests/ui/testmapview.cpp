#include "paintcounter.h"
#include "qmxwidget.h"
#include "testregistry.h"
#include "testunit.h"
#include "touchscreen.h"

#include <QTest>

namespace
{
constexpr int Width = 200;
constexpr int Height = 485;
constexpr int Right = Width - 1;

/// What is drawn on black, so that every dot that is drawn differs.
QImage pictureOf(QMxWidget &view, int height = Height)
{
    view.resize(Width, height);
    QImage image(view.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    view.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

bool hasColours(const QImage &image)
{
    bool found = false;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        found = found || image.pixelColor(i % image.width(), i / image.width()).hslSaturation() > 128;
    }
    return found;
}

bool isBlack(const QImage &image, const QRect &area)
{
    QImage empty = image.copy(area);
    empty.fill(Qt::black);
    return image.copy(area) == empty;
}
} // namespace

class TestMapView : public QObject
{
    Q_OBJECT

private slots:
    void dotsNumbersAndLinesAreInTheirPlaces()
    {
        const struct {
            int ports, pitch, dot, pen;
        } sizes[] = {{2, 467, 12, 2}, {8, 66, 12, 2}, {19, 25, 12, 2}, {20, 24, 8, 2},
                     {21, 23, 8, 1},  {39, 12, 8, 1}, {40, 12, 6, 1},  {60, 8, 6, 1},
                     {61, 7, 4, 1},   {80, 6, 4, 1},  {81, 6, 2, 1},   {160, 3, 2, 1}};
        TestUnit unit(160);
        unit.start(false);
        for (const auto [ports, pitch, dot, pen] : sizes) {
            unit.shm().port = ports;
            QMxWidget view;
            QImage image = pictureOf(view);
            QVERIFY(!hasColours(image));
            for (int row = 0; row < ports; ++row) {
                const int middle = row * pitch + dot;
                QCOMPARE(image.pixelColor(24, middle), QColor(Qt::gray));
                QCOMPARE(image.pixelColor(Right - 23 - dot, middle), QColor(Qt::gray));
                QVERIFY(!isBlack(image, QRect(0, row * pitch, 24, 2 * dot)));
                QVERIFY(!isBlack(image, QRect(Right - 23, row * pitch, 24, 2 * dot)));
            }
            QVERIFY(isBlack(image, QRect(24 + dot + 2, 0, Right - 23 - dot - 2 - (24 + dot + 2), Height)));

            // Every input alone on the last output but one, so that its line crosses no other.
            const int output = ports - 2;
            for (int input = 0; input < ports; ++input) {
                std::vector<quint16> map(size_t(ports), MxNoInput);
                map[size_t(output)] = quint16(input);
                view.setMap(map.data());
                image = pictureOf(view);
                const QPoint start(24 + dot + 4, input * pitch + dot);
                const QPoint end(Right - 27 - dot, output * pitch + dot);
                QCOMPARE(image.pixelColor(start), QMxWidget::lineColor(quint16(input)));
                QCOMPARE(image.pixelColor(end), QMxWidget::lineColor(quint16(input)));
                QVERIFY(isBlack(image, QRect(start.x() - 2, 0, 1, Height)));
                QVERIFY(isBlack(image, QRect(end.x() + 2, 0, 1, Height)));
                if (input == output) {
                    int broad = 0;
                    for (int y = end.y() - 3; y <= end.y() + 3; ++y) {
                        broad += image.pixelColor(Width / 2, y) != QColor(Qt::black);
                    }
                    QCOMPARE(broad, pen);
                }
            }
        }
    }

    void coloursRepeatAfterTen()
    {
        QCOMPARE(QMxWidget::lineColor(0), QColor(255, 0, 0));
        QCOMPARE(QMxWidget::lineColor(1), QColor(255, 127, 0));
        QCOMPARE(QMxWidget::lineColor(14), QColor(0, 127, 255));
        QCOMPARE(QMxWidget::lineColor(159), QColor(255, 0, 127));
    }

    void linesLieOverThoseOfLowerOutputs()
    {
        TestUnit unit(3);
        unit.start(false);
        QMxWidget view;
        const quint16 map[] = {2, MxNoInput, 0};
        QVERIFY(view.setMap(map));
        QCOMPARE(pictureOf(view).pixelColor((40 + Right - 39) / 2, 233 + 12), QMxWidget::lineColor(0));
        const quint16 unknown[] = {3, 0x7FFF, 0x8000}; // inputs that the matrix has not
        QVERIFY(view.setMap(unknown));
        QVERIFY(!hasColours(pictureOf(view)));
    }

    void itPaintsOnlyWhatChanges()
    {
        TestUnit unit(8);
        unit.start(false);
        QMxWidget view;
        PaintCounter paints;
        view.installEventFilter(&paints);
        view.resize(Width, Height);
        view.show();
        QVERIFY(runUntil([&] { return paints.count == 1; }));
        quint16 map[] = {0, 1, 2, 3, 4, 5, 6, 7, 8};
        QVERIFY(view.setMap(map));
        QVERIFY(runUntil([&] { return paints.count == 2; }));
        map[8] = 0; // beyond the matrix
        QVERIFY(!view.setMap(map));
        Touchscreen::catchUp();
        QCOMPARE(paints.count, 2);
    }

    /// It shows what a new view shows.
    void theMatrixMayGrowUnderIt()
    {
        TestUnit unit(2);
        unit.start(false);
        QMxWidget view;
        const quint16 map[MxMaxPort] = {};
        view.setMap(map);
        for (const auto &[ports, height] :
             {std::pair(160, Height), {-5, Height}, {1000000, Height}, {8, Height}, {8, 300}}) {
            unit.shm().port = ports;
            view.setMap(map);
            QMxWidget fresh;
            fresh.setMap(map);
            const QImage picture = pictureOf(view, height);
            QVERIFY(hasColours(picture) && picture == pictureOf(fresh, height));
        }
    }
};

static const RegisteredTest<TestMapView> registered;
#include "testmapview.moc"
