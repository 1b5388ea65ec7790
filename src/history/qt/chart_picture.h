#pragma once

#include <QFont>
#include <QImage>
#include <QString>
#include <cstdint>
#include <vector>

#include "history/chart_scales.h"

namespace brizalog {

struct LegendEntry {
    QString name;
    std::int32_t colour;  // the line's colour, blue × 65536 + green × 256 + red
};

// What a saved picture or a PDF page of a chart holds: whose chart it is and of what, the chart as
// drawn with its scales, and a legend of the series shown.
struct ChartPage {
    QString title;     // "Hilltop cottage · GraphBZ · BZ_2026_11_21.txt · 21 November 2026"
    QString subtitle;  // "Time, 00:01 to 23:57"
    QImage chart;      // the canvas's picture
    ChartScales scales;
    std::vector<LegendEntry> legend;
    QFont font;
};

// The page on white, the chart at its own pixel size inside it.
QImage ChartPicture(const ChartPage& page);

}  // namespace brizalog
