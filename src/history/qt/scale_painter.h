#pragma once

#include <QColor>
#include <QFont>
#include <QMargins>
#include <QPainter>
#include <QRectF>

#include "history/chart_scales.h"

namespace brizalog {

// How the scales of a chart look where they are painted: on the window, in a saved picture or on
// a PDF page.
struct ScaleLook {
    QFont font;
    QColor text;        // tick labels and titles of no series
    QColor background;  // what the labels stand on, for the contrast of a series' title
    QColor grid;        // the faint lines over the chart
};

// Room the scales need around the chart: labels at the left, labels and a title under it, a line
// above it for the value scale's title and the time under the mouse.
QMargins ScaleMargins(const ChartScales& scales, const QFont& font);
// The tick labels and titles in the margins around `chart`.
void PaintScales(QPainter& painter, const QRectF& chart, const ChartScales& scales,
                 const ScaleLook& look);
// The faint line of each labelled tick across `chart`.
void PaintGrid(QPainter& painter, const QRectF& chart, const ChartScales& scales,
               const QColor& colour);
// A text in a series' colour on `background`; behind a colour too close to the background to be
// read, a chip of the opposite lightness.
void PaintNameText(QPainter& painter, const QRectF& box, int flags, const QString& text,
                   std::int32_t colour, const QColor& background);
// The chip behind a name in `colour` on `background`, or an invalid colour when none is needed.
QColor ChipBehind(std::int32_t colour, const QColor& background);

}  // namespace brizalog
