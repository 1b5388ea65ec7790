#include "history/qt/chart_picture.h"

#include <QFontMetricsF>
#include <QPainter>
#include <cmath>

#include "catalogue/plot.h"
#include "history/qt/scale_painter.h"
#include "ui/control_view.h"

namespace brizalog {

namespace {

constexpr int kPad = 16;
constexpr int kSwatch = 28;

struct LegendPlace {
    QRectF swatch;
    QRectF name;
};

// The legend's entries flowed in rows across `width`.
std::vector<LegendPlace> PlaceLegend(const std::vector<LegendEntry>& legend, const QFont& font,
                                     double left, double top, double width, double& bottom) {
    const QFontMetricsF metrics(font);
    const double line = metrics.height();
    std::vector<LegendPlace> places;
    double x = left;
    double y = top;
    for (const LegendEntry& entry : legend) {
        const double nameWidth = metrics.horizontalAdvance(entry.name);
        const double entryWidth = kSwatch + 6 + nameWidth + 18;
        if (x > left && x + entryWidth > left + width) {
            x = left;
            y += line + 6;
        }
        places.push_back(
            {QRectF(x, y + 2, kSwatch, line - 4), QRectF(x + kSwatch + 6, y, nameWidth + 2, line)});
        x += entryWidth;
    }
    bottom = legend.empty() ? top : y + line;
    return places;
}

}  // namespace

QImage ChartPicture(const ChartPage& page) {
    const double ratio = page.chart.devicePixelRatio();
    const QSizeF chart = QSizeF(page.chart.size()) / ratio;
    QFont titleFont = page.font;
    titleFont.setBold(true);
    titleFont.setPointSizeF(page.font.pointSizeF() * 1.2);
    const double titleLine = QFontMetricsF(titleFont).height();
    const double line = QFontMetricsF(page.font).height();
    const QMargins margins = ScaleMargins(page.scales, page.font);

    const double width = kPad + margins.left() + chart.width() + margins.right() + kPad;
    const QRectF chartRect(kPad + margins.left(), kPad + titleLine + line + 8 + margins.top(),
                           chart.width(), chart.height());
    double legendBottom = 0;
    const double legendTop = chartRect.bottom() + margins.bottom() + 6;
    const std::vector<LegendPlace> places =
        PlaceLegend(page.legend, page.font, kPad, legendTop, width - 2 * kPad, legendBottom);
    const double height = legendBottom + kPad;

    QImage picture((QSizeF(width, height) * ratio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setPen(Qt::black);
    painter.setFont(titleFont);
    painter.drawText(QRectF(kPad, kPad, width - 2 * kPad, titleLine),
                     Qt::AlignLeft | Qt::AlignVCenter, page.title);
    painter.setFont(page.font);
    painter.drawText(QRectF(kPad, kPad + titleLine, width - 2 * kPad, line),
                     Qt::AlignLeft | Qt::AlignVCenter, page.subtitle);

    painter.drawImage(chartRect, page.chart);
    PaintGrid(painter, chartRect, page.scales, QColor(255, 255, 255, 56));
    const ScaleLook look{page.font, Qt::black, Qt::white, QColor()};
    PaintScales(painter, chartRect, page.scales, look);

    // Each entry: its line on the chart's own grey, then its name.
    const QColor chartGrey = ToQColor(kPlotScreenColour);
    for (std::size_t i = 0; i < places.size(); ++i) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(chartGrey);
        painter.drawRect(places[i].swatch);
        painter.setBrush(Qt::NoBrush);
        const double y = std::round(places[i].swatch.center().y());
        painter.fillRect(QRectF(places[i].swatch.left() + 4, y - 1.5, kSwatch - 8, 3),
                         ToQColor(page.legend[i].colour));
        painter.setPen(Qt::black);
        painter.drawText(places[i].name, Qt::AlignLeft | Qt::AlignVCenter, page.legend[i].name);
    }
    painter.end();
    return picture;
}

}  // namespace brizalog
