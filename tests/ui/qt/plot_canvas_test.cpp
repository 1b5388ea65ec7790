// The drawing canvas: a picture that lasts until it is cleared, whatever the window does.

#include <QSignalSpy>
#include <QTest>

#include "ui/plot_canvas.h"

namespace brizalog {

namespace {

constexpr std::int32_t kRed = 255;
constexpr QRgb kRedRgb = 0xFFFF0000;

int CountPixels(const QImage& image, QRgb colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixel(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

class PlotCanvasTest : public QObject {
    Q_OBJECT

private slots:
    void linesStayUntilClearAndFollowTheScaleOfTheirTime() {
        PlotCanvas canvas;
        canvas.resize(200, 100);
        canvas.SetScaleWidth(10);
        canvas.SetScaleHeight(10);
        canvas.Line(0, 5, 10, 5, kRed);  // across the middle
        canvas.SetScaleHeight(100);      // keeps what is drawn, later lines use it
        canvas.Line(5, 0, 5, 100, 65280);
        QCOMPARE(canvas.image().pixel(20, 50), kRedRgb);
        QCOMPARE(canvas.image().pixel(100, 20), qRgb(0, 255, 0));

        canvas.Clear();
        QCOMPARE(CountPixels(canvas.image(), kRedRgb), 0);
        QCOMPARE(canvas.image().pixel(0, 0), qRgb(64, 64, 64));
    }

    void aResizeDrawsTheKeptLinesSharplyAtTheNewSize() {
        PlotCanvas canvas;
        canvas.resize(200, 100);
        canvas.SetScaleWidth(10);
        canvas.SetScaleHeight(10);
        canvas.Line(0, 5, 10, 5, kRed);
        canvas.resize(400, 300);
        QApplication::sendPostedEvents();
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QCOMPARE(canvas.image().size(), QSize(400, 300));
        QCOMPARE(canvas.image().pixel(390, 150), kRedRgb);
        // Still one pixel thick: drawn again, not stretched.
        QCOMPARE(CountPixels(canvas.image(), kRedRgb), 400);
    }

    void aBackgroundChangeKeepsTheLines() {
        PlotCanvas canvas;
        canvas.resize(100, 100);
        canvas.SetScaleWidth(100);
        canvas.SetScaleHeight(100);
        canvas.Line(0, 50, 100, 50, kRed);
        canvas.SetBackColour(kPlotPrintColour);
        QCOMPARE(canvas.image().pixel(0, 0), qRgb(255, 255, 255));
        QCOMPARE(canvas.image().pixel(50, 50), kRedRgb);
        // The colour -256 is taken by its low 24 bits: blue and green, no red.
        canvas.Line(0, 10, 100, 10, -256);
        QCOMPARE(canvas.image().pixel(50, 10), qRgb(0, 255, 255));
    }

    void aNeverClearedSurfaceStopsKeepingLinesAndScalesItsImage() {
        PlotCanvas canvas;
        canvas.resize(100, 100);
        canvas.SetScaleWidth(100);
        canvas.SetScaleHeight(100);
        canvas.SetDrawWidth(5);
        for (std::size_t i = 0; i <= PlotCanvas::kMaxKeptLines; ++i) {
            canvas.Line(50, 50, 50, 50, kRed);
        }
        QVERIFY(!canvas.keepsLines());
        QCOMPARE(canvas.keptLines(), std::size_t{0});
        canvas.resize(200, 200);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QCOMPARE(canvas.image().size(), QSize(200, 200));
        QCOMPARE(canvas.image().pixel(100, 100), kRedRgb);
        canvas.SetBackColour(kPlotPrintColour);
        QCOMPARE(canvas.image().pixel(5, 5), qRgb(255, 255, 255));
        canvas.Clear();
        QVERIFY(canvas.keepsLines());
    }

    void farOffAndDegenerateLinesNeverBreakThePicture() {
        PlotCanvas canvas;
        canvas.resize(100, 100);
        canvas.SetScaleWidth(100);
        canvas.SetScaleHeight(100);
        canvas.Line(-1e12, 50, 1e12, 50, kRed);
        QCOMPARE(canvas.image().pixel(50, 50), kRedRgb);
        canvas.SetScaleHeight(0);
        canvas.Line(0, 0, 100, 0, kRed);
        QCOMPARE(canvas.image().pixel(50, 0), qRgb(64, 64, 64));
    }

    void theMouseIsReportedInTheScaleOfTheSurface() {
        PlotCanvas canvas;
        canvas.resize(200, 100);
        canvas.SetScaleWidth(1000);
        canvas.SetScaleHeight(-50);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QSignalSpy pressed(&canvas, &PlotCanvas::mousePressed);
        QSignalSpy released(&canvas, &PlotCanvas::mouseReleased);
        QTest::mousePress(&canvas, Qt::LeftButton, {}, QPoint(50, 50));
        QTest::mouseRelease(&canvas, Qt::LeftButton, {}, QPoint(150, 20));
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(pressed.at(0).at(0).toDouble(), 250.0);
        QCOMPARE(pressed.at(0).at(1).toDouble(), -25.0);
        QCOMPARE(released.at(0).at(0).toDouble(), 750.0);
        QCOMPARE(released.at(0).at(2).value<Qt::MouseButton>(), Qt::LeftButton);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::PlotCanvasTest)
#include "plot_canvas_test.moc"
