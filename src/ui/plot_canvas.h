#pragma once

#include <QImage>
#include <QPainter>
#include <QPen>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "catalogue/plot.h"

namespace brizalog {

// The drawing surface of the desktop: a Plot on a persistent image. What is drawn stays until
// Clear; a background change shows the same lines on the new colour; an expose paints the image
// and nothing else, so no chart is ever drawn twice for the screen's sake.
//
// The lines drawn since the last Clear are kept, each with the scale it was drawn in, so that a
// resize draws them again sharply at the new size without any caller running again. A surface
// that is never cleared (a live plot adding dots for months) would keep them without end: past
// kMaxKeptLines the list is dropped until the next Clear, and a resize then scales the image as
// it stands instead.
//
// Mouse events are reported in the surface's current scale, as the charts' handlers read them.
class PlotCanvas : public QWidget, public Plot {
    Q_OBJECT

public:
    // About 24 bytes a line: some 10 MB at most, ten full history charts' worth.
    static constexpr std::size_t kMaxKeptLines = 400'000;

    explicit PlotCanvas(QWidget* parent = nullptr);
    ~PlotCanvas() override;

    void Clear() override;
    void SetScaleWidth(double width) override { m_scaleWidth = width; }
    void SetScaleHeight(double height) override { m_scaleHeight = height; }
    double ScaleWidth() const override { return m_scaleWidth; }
    double ScaleHeight() const override { return m_scaleHeight; }
    void SetDrawWidth(int pixels) override;
    int DrawWidth() const override { return m_drawWidth; }
    void Line(double x1, double y1, double x2, double y2, std::int32_t colour) override;
    void SetBackColour(std::int32_t colour) override;
    std::int32_t BackColour() const override { return m_back; }

    // The picture as it stands, at the widget's size in device pixels.
    const QImage& image();
    // False once the kept lines have been dropped for their number (see above).
    bool keepsLines() const { return m_keeping; }
    std::size_t keptLines() const { return m_kept.size(); }
    // Counts the clears: a chart starts with one, so a changed count means another picture.
    std::uint64_t clears() const { return m_clears; }

    // Painted over the picture at each expose, in widget coordinates, and never into it: marks
    // that follow the mouse or the window's choices (a grid, a crosshair) cost one small repaint
    // and leave image() as the charts drew it. An empty overlay paints nothing.
    void SetOverlay(std::function<void(QPainter&)> overlay);

    QSize sizeHint() const override { return {640, 360}; }
    QSize minimumSizeHint() const override { return {160, 90}; }

signals:
    void mousePressed(double x, double y, Qt::MouseButton button);
    void mouseMoved(double x, double y, Qt::MouseButtons buttons);
    void mouseReleased(double x, double y, Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // A line as a fraction of the surface's size, which holds at any size.
    struct KeptLine {
        float x1, y1, x2, y2;
        std::int32_t colour;
        std::uint16_t width;
    };

    void draw(const KeptLine& line);
    // A line `thickness` device pixels wide between two points inside the image.
    void PlotThinLine(QPointF from, QPointF to, QRgb colour, int thickness);
    void endPainting();
    // Brings the image to the widget's size: it may be drawn on before it is first shown.
    void fitImage();
    void redrawKept();
    QPointF toScale(QPointF position) const;

    QImage m_image;
    std::function<void(QPainter&)> m_overlay;
    std::uint64_t m_clears = 0;
    std::unique_ptr<QPainter> m_painter;  // open while lines arrive, closed before each expose
    QPen m_pen;
    bool m_updateQueued = false;
    std::vector<KeptLine> m_kept;
    bool m_keeping = true;
    double m_scaleWidth = kPlotDesignWidth;
    double m_scaleHeight = kPlotDesignHeight;
    int m_drawWidth = 1;
    std::int32_t m_back = kPlotScreenColour;
};

}  // namespace brizalog
