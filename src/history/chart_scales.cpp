#include "history/chart_scales.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "history/graph_window.h"

namespace brizalog {

namespace {

constexpr double kMinutesPerDay = 1440;

// A tick that falls this far outside the chart (a fraction of its width) is left out; nearer
// ones stand on the edge.
constexpr double kEdgeTolerance = 0.01;

std::string Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(' ');
    return std::string(text.substr(first, last - first + 1));
}

void AddTick(ChartScale& scale, double at, std::string label) {
    if (at < -kEdgeTolerance || at > 1 + kEdgeTolerance || !std::isfinite(at)) {
        return;
    }
    scale.ticks.push_back({std::clamp(at, 0.0, 1.0), std::move(label)});
}

double StepOf(const std::vector<double>& ticks) {
    return ticks.size() > 1 ? ticks[1] - ticks[0] : 1;
}

// The records of the drawn view, clamped to the records of the last read.
struct DrawnRecords {
    int first = 0;
    int last = 0;
    double start = 0;  // the drawn ViewStart: record j lies at x = j - start
    bool valid = false;
};

DrawnRecords Drawn(const GraphWindow& window) {
    DrawnRecords drawn;
    if (window.RecordCount < 2) {
        return drawn;
    }
    drawn.start = window.drawnViewStart;
    drawn.first = std::clamp(static_cast<int>(std::lround(window.drawnViewStart)), 1,
                             std::min(window.RecordCount, kRecordLimit));
    drawn.last = std::clamp(static_cast<int>(std::lround(window.drawnViewEnd)), 1,
                            std::min(window.RecordCount, kRecordLimit));
    drawn.valid = drawn.first < drawn.last;
    return drawn;
}

double Minute(const GraphWindow& window, int record) {
    return window.LogTime[record] * kMinutesPerDay;
}

ChartScale TimeScale(const GraphWindow& window) {
    ChartScale scale;
    scale.title = LogDateText(window.Find("FileName")->text);
    if (scale.title.empty()) {
        scale.title = "Time";
    }
    const DrawnRecords drawn = Drawn(window);
    const double width = window.drawnViewEnd - window.drawnViewStart - 2;
    if (!drawn.valid || !(width > 0)) {
        return scale;
    }
    const double from = Minute(window, drawn.first);
    const double to = Minute(window, drawn.last);
    if (!(to > from)) {
        return scale;
    }
    const double perRecord = (to - from) / (drawn.last - drawn.first);
    const int step = TimeTickMinutes(to - from);
    // Ticks within a minute of the first and last record: the time boxes' own resolution.
    int k = drawn.first;
    for (int minute = static_cast<int>(std::ceil((from - 1) / step)) * step; minute <= to + 1;
         minute += step) {
        while (k <= drawn.last && Minute(window, k) < minute) {
            ++k;
        }
        double x;
        if (k == drawn.first) {
            x = (k - drawn.start) - (Minute(window, k) - minute) / perRecord;
        } else if (k > drawn.last) {
            x = (drawn.last - drawn.start) + (minute - Minute(window, drawn.last)) / perRecord;
        } else {
            const double before = Minute(window, k - 1);
            const double after = Minute(window, k);
            x = (k - 1 - drawn.start) + (after > before ? (minute - before) / (after - before) : 1);
        }
        AddTick(scale, x / width, DayFractionText(minute / kMinutesPerDay));
    }
    return scale;
}

ChartScale SeriesScale(const GraphWindow& window, int series, std::string_view windUnits) {
    ChartScale scale;
    if (series < 0 || series >= static_cast<int>(window.member().series.size())) {
        return scale;
    }
    const SeriesRow& row = window.member().series[static_cast<std::size_t>(series)];
    const std::string unit = SeriesUnit(window, series, windUnits);
    const Control* box = window.Find(row.box);
    scale.title = box != nullptr ? box->text : std::string(row.designCaption);
    if (!unit.empty()) {
        scale.title += " (" + unit + ")";
    }
    scale.colour = window.SeriesColour(series);
    const double top = window.RangeTop(series);
    const double bottom = window.RangeBottom(series);
    const double range = top - bottom;
    const double height = window.SeriesHeight(series);
    if (!(range > 0) || !(height > 0)) {
        return scale;
    }
    // Y(v) = top − v + R / 40 in a scale height of `height`.
    const double margin = range / 40;
    scale.straight = true;
    scale.first = top + margin;
    scale.last = top + margin - height;
    const std::vector<double> values = RoundTicks(bottom, top);
    for (double v : values) {
        AddTick(scale, (top - v + margin) / height, TickText(v, StepOf(values)));
    }
    return scale;
}

// A straight scale from `first` at 0 to `last` at 1, with round ticks from `low` to `high`.
ChartScale Straight(std::string title, double first, double last, double low, double high,
                    bool wholeOnly = false) {
    ChartScale scale;
    scale.title = std::move(title);
    if (!(last != first) || !std::isfinite(first) || !std::isfinite(last)) {
        return scale;
    }
    scale.straight = true;
    scale.first = first;
    scale.last = last;
    const std::vector<double> values = RoundTicks(low, high, wholeOnly);
    for (double v : values) {
        AddTick(scale, (v - first) / (last - first), TickText(v, StepOf(values)));
    }
    return scale;
}

}  // namespace

ChartKind ShownChart(const GraphWindow& window) {
    const Control* title = window.Find("Label7");
    const std::string& text = title != nullptr ? title->text : std::string();
    if (text == "Power vs RPM") {
        return ChartKind::PowerVsRpm;
    }
    if (text == "Power vs WindSpeed") {
        return ChartKind::PowerVsWind;
    }
    if (text == "Frequency vs Power") {
        return ChartKind::Distribution;
    }
    return Drawn(window).valid ? ChartKind::Time : ChartKind::None;
}

ChartScales ScalesOf(const GraphWindow& window, int picked, double scaleWidth, double scaleHeight,
                     std::string_view windUnits) {
    ChartScales scales;
    scales.kind = ShownChart(window);
    const std::string units = windUnits.empty() ? std::string() : " (" + Trimmed(windUnits) + ")";
    switch (scales.kind) {
        case ChartKind::None:
            break;
        case ChartKind::Time:
            scales.horizontal = TimeScale(window);
            scales.vertical = SeriesScale(window, picked, windUnits);
            break;
        case ChartKind::PowerVsRpm:
        case ChartKind::PowerVsWind: {
            // The curves put a power P at the top edge and 0 on the bottom one, and speeds from 0
            // at the left edge in a width of 1.05 times their limit.
            const double limit = scaleHeight / 1.05;
            scales.vertical = Straight("Power (W)", limit, 0, 0, limit);
            scales.horizontal =
                scales.kind == ChartKind::PowerVsRpm
                    ? Straight("Turbine speed (RPM)", 0, scaleWidth, 0, scaleWidth / 1.05)
                    : Straight("Wind speed" + units, 0, scaleWidth, 0, scaleWidth / 1.05);
            break;
        }
        case ChartKind::Distribution: {
            // The band of j × 10 W stands at x = j + 1; counts rise from the bottom edge to the
            // largest count at 1/21 of the height below the top.
            const double bands = std::round(scaleWidth / 1.05);
            scales.horizontal =
                Straight("Power in 10 W bands (W)", -10, (scaleWidth - 1) * 10, 0, bands * 10);
            scales.vertical = Straight("Records", scaleHeight, 0, 0, scaleHeight / 1.05, true);
            break;
        }
    }
    return scales;
}

std::vector<double> RoundTicks(double low, double high, bool wholeOnly) {
    std::vector<double> ticks;
    if (!(high > low) || !std::isfinite(low) || !std::isfinite(high)) {
        return ticks;
    }
    constexpr double kMantissas[] = {1, 2, 2.5, 5};
    // The step whose count of ticks lies nearest to 4 to 6; between two equally near, the finer.
    // Only ends that fall between round values (11.2 to 14.9) leave none with 4 to 6.
    const int exponent = static_cast<int>(std::floor(std::log10(high - low))) - 1;
    double step = 0;
    double bestMiss = INFINITY;
    for (int e = exponent; e <= exponent + 2; ++e) {
        for (double mantissa : kMantissas) {
            const double candidate = mantissa * std::pow(10.0, e);
            if (wholeOnly && candidate < 1) {
                continue;
            }
            const double count =
                std::floor(high / candidate + 1e-9) - std::ceil(low / candidate - 1e-9) + 1;
            const double miss = count < 4 ? 4 - count : count > 6 ? count - 6 : 0;
            if (miss < bestMiss) {
                bestMiss = miss;
                step = candidate;
            }
        }
    }
    if (step == 0) {
        return ticks;
    }
    for (double k = std::ceil(low / step - 1e-9); k <= std::floor(high / step + 1e-9); ++k) {
        const double value = k * step;
        ticks.push_back(value == 0 ? 0 : value);  // never "-0"
    }
    return ticks;
}

std::string TickText(double value, double step) {
    int decimals = 0;
    double scaled = std::abs(step);
    while (decimals < 6 && std::abs(scaled - std::round(scaled)) > 1e-6 * std::max(1.0, scaled)) {
        scaled *= 10;
        ++decimals;
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    std::string result = text;
    if (result.starts_with('-') && result.find_first_not_of("-0.") == std::string::npos) {
        result.erase(0, 1);
    }
    return result;
}

int TimeTickMinutes(double spanMinutes) {
    constexpr int kSteps[] = {1, 2, 5, 10, 15, 30, 60, 120, 180, 360, 720};
    for (int step : kSteps) {
        if (spanMinutes / step < 8) {
            return step;
        }
    }
    return 720;
}

std::string SeriesUnit(const GraphWindow& window, int series, std::string_view windUnits) {
    const SeriesRow& row = window.member().series[static_cast<std::size_t>(series)];
    const ReadoutText& readout = row.readoutText;
    if (readout.windUnits) {
        return Trimmed(windUnits);
    }
    std::string unit = Trimmed(readout.unit);
    if (unit.empty()) {
        const std::string_view pattern = readout.pattern;
        const auto end = pattern.find_first_not_of("#0. ");
        unit = end == std::string_view::npos ? std::string() : Trimmed(pattern.substr(end));
    }
    if (unit.empty()) {
        unit = Trimmed(row.extremeText.unit);
    }
    return unit;
}

std::string LogDateText(std::string_view fileName) {
    static constexpr const char* kMonths[] = {"January",   "February", "March",    "April",
                                              "May",       "June",     "July",     "August",
                                              "September", "October",  "November", "December"};
    const auto digits = [&](std::size_t at, std::size_t count) {
        if (at + count > fileName.size()) {
            return -1;
        }
        int value = 0;
        for (std::size_t i = at; i < at + count; ++i) {
            if (fileName[i] < '0' || fileName[i] > '9') {
                return -1;
            }
            value = value * 10 + (fileName[i] - '0');
        }
        return value;
    };
    // "_YYYY_MM_DD" anywhere in the name.
    for (std::size_t at = 0; at + 11 <= fileName.size(); ++at) {
        if (fileName[at] != '_' || fileName[at + 5] != '_' || fileName[at + 8] != '_') {
            continue;
        }
        const int year = digits(at + 1, 4);
        const int month = digits(at + 6, 2);
        const int day = digits(at + 9, 2);
        if (year >= 0 && month >= 1 && month <= 12 && day >= 1 && day <= 31) {
            return std::to_string(day) + " " + kMonths[month - 1] + " " + std::to_string(year);
        }
    }
    return {};
}

// ---- Zoom ---------------------------------------------------------------------------------

std::optional<MinuteRange> RangeOfRecords(const GraphWindow& window) {
    const int count = std::min(window.RecordCount, kRecordLimit);
    if (count < 1) {
        return std::nullopt;
    }
    double earliest = Minute(window, 1);
    double latest = earliest;
    for (int i = 2; i <= count; ++i) {
        earliest = std::min(earliest, Minute(window, i));
        latest = std::max(latest, Minute(window, i));
    }
    return MinuteRange{std::max(0, static_cast<int>(std::lround(earliest)) - 1),
                       std::min(kWholeDay.finish, static_cast<int>(std::lround(latest)) + 1)};
}

double MinuteAt(const GraphWindow& window, double x) {
    const DrawnRecords drawn = Drawn(window);
    if (!drawn.valid) {
        return kWholeDay.finish / 2.0;
    }
    const double position = std::clamp(x + drawn.start, static_cast<double>(drawn.first),
                                       static_cast<double>(drawn.last));
    const int below = static_cast<int>(std::floor(position));
    const int above = std::min(below + 1, drawn.last);
    const double part = position - below;
    return Minute(window, below) + (Minute(window, above) - Minute(window, below)) * part;
}

int RecordsInside(const GraphWindow& window, MinuteRange range) {
    int inside = 0;
    for (int i = 1; i <= std::min(window.RecordCount, kRecordLimit); ++i) {
        const double minute = Minute(window, i);
        inside += minute > range.start + 1e-6 && minute < range.finish - 1e-6 ? 1 : 0;
    }
    return inside;
}

std::optional<MinuteRange> Zoomed(MinuteRange range, double anchor, double factor) {
    const int span = range.finish - range.start;
    const int wanted = std::clamp(static_cast<int>(std::lround(span * factor)), kNarrowestZoom,
                                  kWholeDay.finish - kWholeDay.start);
    anchor =
        std::clamp(anchor, static_cast<double>(range.start), static_cast<double>(range.finish));
    // The time under the mouse keeps its place across the chart.
    const double share = span > 0 ? (anchor - range.start) / span : 0.5;
    int start = static_cast<int>(std::lround(anchor - share * wanted));
    start = std::clamp(start, kWholeDay.start, kWholeDay.finish - wanted);
    const MinuteRange zoomed{start, start + wanted};
    if (zoomed == range) {
        return std::nullopt;
    }
    return zoomed;
}

std::optional<MinuteRange> Panned(MinuteRange range, double fraction) {
    const int span = range.finish - range.start;
    int shift = static_cast<int>(std::lround(span * fraction));
    if (shift == 0) {
        shift = fraction < 0 ? -1 : 1;
    }
    shift = std::clamp(shift, kWholeDay.start - range.start, kWholeDay.finish - range.finish);
    if (shift == 0) {
        return std::nullopt;
    }
    return MinuteRange{range.start + shift, range.finish + shift};
}

void ZoomHistory::Push(MinuteRange range) {
    if (!m_ranges.empty() && m_ranges.back() == range) {
        return;
    }
    if (m_ranges.size() == kDepth) {
        m_ranges.erase(m_ranges.begin());
    }
    m_ranges.push_back(range);
}

std::optional<MinuteRange> ZoomHistory::Back() {
    if (m_ranges.empty()) {
        return std::nullopt;
    }
    const MinuteRange range = m_ranges.back();
    m_ranges.pop_back();
    return range;
}

// ---- Colours -------------------------------------------------------------------------------

double ContrastRatio(std::int32_t a, std::int32_t b) {
    const auto luminance = [](std::int32_t colour) {
        const auto channel = [](int value) {
            const double c = value / 255.0;
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * channel(colour & 0xFF) + 0.7152 * channel((colour >> 8) & 0xFF) +
               0.0722 * channel((colour >> 16) & 0xFF);
    };
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

bool NeedsChip(std::int32_t colour, std::int32_t background) {
    // 3 : 1 is what the guidelines ask of large text and of graphics.
    return ContrastRatio(colour, background) < 3;
}

}  // namespace brizalog
