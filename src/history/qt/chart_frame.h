#pragma once

#include <QWidget>
#include <optional>

#include "history/chart_scales.h"

namespace brizalog {

class PlotCanvas;

// The chart of a graph window with its scales around it: the canvas sits inside margins where
// the value and time labels stand, and the grid and a crosshair are painted over the canvas's
// picture, never into it. With the scales off the canvas takes the whole frame and nothing is
// painted over it: the chart looks exactly as the charts drew it.
class ChartFrame : public QWidget {
    Q_OBJECT

public:
    ChartFrame(PlotCanvas* canvas, QWidget* parent = nullptr);

    void SetScalesShown(bool shown);
    bool scalesShown() const { return m_shown; }
    void SetScales(ChartScales scales);
    const ChartScales& scales() const { return m_scales; }
    // The crosshair at `at` in the canvas's coordinates, a vertical line (and a horizontal one
    // when `cross`), with `label` above the chart at the line; none hides it.
    void SetCrosshair(std::optional<QPointF> at, bool cross, const QString& label);
    const QString& crosshairLabel() const { return m_label; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Place();
    void PaintOver(QPainter& painter);
    QRect LabelRect() const;
    QRect CrosshairStrips() const;

    PlotCanvas* m_canvas;
    bool m_shown = true;
    ChartScales m_scales;
    QMargins m_margins;
    std::optional<QPointF> m_at;
    bool m_cross = false;
    QString m_label;
};

}  // namespace brizalog
