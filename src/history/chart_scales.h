#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brizalog {

class GraphWindow;

// What the graph windows show around their charts so that a value is read without hovering: a
// time or quantity scale under the chart, a value scale at its left, and the zoom of the wheel,
// the keys and "Whole day". None of it is drawn on the Plot: the views paint it beside and over
// the chart's image, from the positions worked out here.

// One tick of a scale. `at` runs from 0 at the left (or top) edge of the chart to 1 at the right
// (or bottom) edge, whatever the chart's own scale is.
struct ScaleTick {
    double at = 0;
    std::string label;
};

struct ChartScale {
    std::vector<ScaleTick> ticks;
    std::string title;         // "Battery V (V)", "Power (W)", a date under a time chart
    std::int32_t colour = -1;  // a series' line colour; -1: the window's text colour
    // A straight scale reads a value anywhere: `first` at `at` 0, `last` at `at` 1. A time scale
    // follows the records, which need not be evenly spaced, and is not straight.
    bool straight = false;
    double first = 0;
    double last = 0;

    bool empty() const { return ticks.empty(); }
    double ValueAt(double at) const { return first + (last - first) * at; }
};

enum class ChartKind : std::uint8_t { None, Time, PowerVsRpm, PowerVsWind, Distribution };

struct ChartScales {
    ChartKind kind = ChartKind::None;
    ChartScale horizontal;  // under the chart
    ChartScale vertical;    // at its left
};

// Which chart the window shows now: the title of the chart says it, even where the x-axis options
// say otherwise (a wind chart asked for in Unscaled mode selects the time option on its way).
// None when nothing is drawn: no records in view, or a degenerate scale.
ChartKind ShownChart(const GraphWindow& window);

// The scales of the chart as it stands. `picked` is the series whose values the left scale shows
// on a time chart (kNoSeries: none); `scaleWidth` and `scaleHeight` are the Plot's scale, which
// the curves and the distribution set for themselves; `windUnits` is the settings' WSUnits.
ChartScales ScalesOf(const GraphWindow& window, int picked, double scaleWidth, double scaleHeight,
                     std::string_view windUnits);

// 4 to 6 round values (steps of 1, 2, 2.5 or 5 times a power of ten) from `low` to `high`; none
// when the range is empty or not finite. `wholeOnly` keeps the step at 1 or more (counts).
std::vector<double> RoundTicks(double low, double high, bool wholeOnly = false);
// A tick's value with as many decimals as its step needs: 2.5 with step 2.5, 20 with step 10.
std::string TickText(double value, double step);
// The minutes between two time labels for a span: every 3 h over a day, 1 h, 15 min, 1 min as it
// narrows, so that at most 8 labels stand under the chart.
int TimeTickMinutes(double spanMinutes);
// The unit of a series as its readouts write it ("V", "RPM", "m/s"); empty when they write none.
std::string SeriesUnit(const GraphWindow& window, int series, std::string_view windUnits);
// The date of a log from its name, "BZ_2026_11_21.txt" or "BZ_2026_11_21_14.txt": "21 November
// 2026"; empty when the name carries no date.
std::string LogDateText(std::string_view fileName);

// ---- Zoom ---------------------------------------------------------------------------------

// A range of the time boxes in minutes of the day, 0 (00:00) to 1439 (23:59). A read keeps the
// records strictly between the two.
struct MinuteRange {
    int start = 0;
    int finish = 1439;
    bool operator==(const MinuteRange&) const = default;
};
inline constexpr MinuteRange kWholeDay{0, 1439};
// The narrowest range the wheel and the keys zoom to: two whole minutes inside.
inline constexpr int kNarrowestZoom = 3;

// The time boxes that read the records of the last read again: a minute before the earliest to a
// minute after the latest, within the day. None when the last read kept no record.
std::optional<MinuteRange> RangeOfRecords(const GraphWindow& window);
// The time of the day in minutes at `x` of the time chart's scale, between the records beside it.
double MinuteAt(const GraphWindow& window, double x);
// How many records of the last read lie strictly inside `range`.
int RecordsInside(const GraphWindow& window, MinuteRange range);
// `range` narrowed (factor under 1) or widened around `anchor`, in whole minutes, within the day
// and no narrower than kNarrowestZoom; none when that changes nothing.
std::optional<MinuteRange> Zoomed(MinuteRange range, double anchor, double factor);
// `range` moved by `fraction` of its span (at least a minute), within the day; none at the edge.
std::optional<MinuteRange> Panned(MinuteRange range, double fraction);

// The views before each zoom of one log, latest last. "Whole day" goes back one at a time, and to
// the whole day when none is left; another log starts afresh.
class ZoomHistory {
public:
    static constexpr std::size_t kDepth = 64;
    void Push(MinuteRange range);
    std::optional<MinuteRange> Back();
    void Clear() { m_ranges.clear(); }
    std::size_t size() const { return m_ranges.size(); }

private:
    std::vector<MinuteRange> m_ranges;
};

// ---- Colours -------------------------------------------------------------------------------

// The contrast of two colours of the system (blue × 65536 + green × 256 + red), 1 to 21, as the
// accessibility guidelines reckon it from their relative luminance.
double ContrastRatio(std::int32_t a, std::int32_t b);
// True when a name in `colour` cannot be read on `background` without a light chip behind it:
// the default blue of channels 1 and 17 on the chart's dark grey is 1.2 : 1.
bool NeedsChip(std::int32_t colour, std::int32_t background);

}  // namespace brizalog
