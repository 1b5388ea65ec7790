#include "history/qt/scale_painter.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "ui/control_view.h"

namespace brizalog {

namespace {

constexpr int kTickLength = 4;
constexpr int kGap = 3;
constexpr int kRightMargin = 6;

std::int32_t SystemColour(const QColor& colour) {
    return colour.red() + colour.green() * 256 + colour.blue() * 65536;
}

}  // namespace

QColor ChipBehind(std::int32_t colour, const QColor& background) {
    const std::int32_t back = SystemColour(background);
    if (!NeedsChip(colour, back)) {
        return {};
    }
    // The chip takes the lightness opposite to the background's.
    return background.lightness() < 128 ? QColor(0xEE, 0xEE, 0xEE) : QColor(0x30, 0x30, 0x30);
}

void PaintNameText(QPainter& painter, const QRectF& box, int flags, const QString& text,
                   std::int32_t colour, const QColor& background) {
    const QColor own = colour < 0 ? painter.pen().color() : ToQColor(colour);
    const QColor chip = colour < 0 ? QColor() : ChipBehind(colour, background);
    const QRectF bounds = painter.boundingRect(box, flags, text);
    if (chip.isValid()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(chip);
        painter.drawRoundedRect(bounds.adjusted(-3, 0, 3, 0), 3, 3);
        painter.setBrush(Qt::NoBrush);
    }
    painter.setPen(own);
    painter.drawText(box, flags, text);
}

QMargins ScaleMargins(const ChartScales& scales, const QFont& font) {
    const QFontMetricsF metrics(font);
    const int line = static_cast<int>(std::ceil(metrics.height()));
    // As wide as the labels of any limit, so the chart keeps its size from one series to another.
    double widest = metrics.horizontalAdvance(QStringLiteral("-000.0"));
    for (const ScaleTick& tick : scales.vertical.ticks) {
        widest = std::max(widest, metrics.horizontalAdvance(QString::fromStdString(tick.label)));
    }
    const int left = static_cast<int>(std::ceil(widest)) + kTickLength + 2 * kGap;
    // A label at the right edge shifts left onto the chart instead of widening the margin.
    const int right = kRightMargin;
    return {left, line + kGap, right, kTickLength + kGap + 2 * line + kGap};
}

void PaintScales(QPainter& painter, const QRectF& chart, const ChartScales& scales,
                 const ScaleLook& look) {
    painter.save();
    painter.setFont(look.font);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFontMetricsF metrics(look.font);
    const double line = metrics.height();

    // Under the chart: ticks and labels, kept inside the margins at both ends.
    painter.setPen(look.text);
    double lastRight = -1e9;
    for (const ScaleTick& tick : scales.horizontal.ticks) {
        const double x = chart.left() + tick.at * chart.width();
        painter.drawLine(QPointF(x, chart.bottom()), QPointF(x, chart.bottom() + kTickLength));
        const QString label = QString::fromStdString(tick.label);
        const double width = metrics.horizontalAdvance(label);
        const double left = std::min(std::max(x - width / 2, chart.left() - width / 2),
                                     chart.right() + kRightMargin - width);
        if (left < lastRight + kGap) {
            continue;  // labels never overlap: a crowded one is left out
        }
        painter.drawText(QRectF(left, chart.bottom() + kTickLength + 1, width, line),
                         Qt::AlignCenter, label);
        lastRight = left + width;
    }
    if (!scales.horizontal.title.empty()) {
        painter.drawText(
            QRectF(chart.left(), chart.bottom() + kTickLength + line + kGap, chart.width(), line),
            Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(scales.horizontal.title));
    }

    // At the left: ticks and labels, their title above the chart in the series' colour.
    double lastBottom = -1e9;
    for (auto it = scales.vertical.ticks.rbegin(); it != scales.vertical.ticks.rend(); ++it) {
        const double y = chart.top() + it->at * chart.height();
        painter.drawLine(QPointF(chart.left() - kTickLength, y), QPointF(chart.left(), y));
        const QRectF box(0, y - line / 2, chart.left() - kTickLength - kGap, line);
        if (box.top() < lastBottom) {
            continue;
        }
        painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(it->label));
        lastBottom = box.bottom();
    }
    if (!scales.vertical.title.empty()) {
        const QRectF title(
            std::max(0.0, chart.left() - metrics.horizontalAdvance(QStringLiteral("00"))),
            chart.top() - line - kGap, chart.width() / 2, line);
        PaintNameText(painter, title, Qt::AlignLeft | Qt::AlignVCenter,
                      QString::fromStdString(scales.vertical.title), scales.vertical.colour,
                      look.background);
    }
    painter.restore();
}

void PaintGrid(QPainter& painter, const QRectF& chart, const ChartScales& scales,
               const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colour, 0, Qt::DotLine));
    for (const ScaleTick& tick : scales.horizontal.ticks) {
        const double x = std::round(chart.left() + tick.at * (chart.width() - 1));
        painter.drawLine(QPointF(x, chart.top()), QPointF(x, chart.bottom()));
    }
    for (const ScaleTick& tick : scales.vertical.ticks) {
        const double y = std::round(chart.top() + tick.at * (chart.height() - 1));
        painter.drawLine(QPointF(chart.left(), y), QPointF(chart.right(), y));
    }
    painter.restore();
}

}  // namespace brizalog
