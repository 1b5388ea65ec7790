#include <cmath>
#include <string>

#include "catalogue/failure.h"
#include "catalogue/patterns.h"
#include "catalogue/text_rules.h"
#include "history/graph_window.h"

namespace brizalog {

namespace {

// The colour number of the zero lines; as an unsigned word 0xFFFFFF00, in its low 24 bits
// blue 255, green 255, red 0.
constexpr std::int32_t kZeroLineColour = -256;

std::string FirstTwo(const std::string& text) {
    return text.substr(0, 2);
}
std::string LastTwo(const std::string& text) {
    return text.size() <= 2 ? text : text.substr(text.size() - 2);
}

// Rounds to `places` decimals, halves to even as the platform's rounding does.
double RoundPlaces(double value, int places) {
    const double factor = std::pow(10.0, places);
    return std::nearbyint(value * factor) / factor;
}

}  // namespace

void GraphWindow::TimeChart() {
    if (m_member.hasXAxisChoices && !Ctl("XAxisTime").checked) {
        // Selecting the time axis runs its click, which shows what the other charts hid.
        SelectOption("XAxisTime");
        ShowHiddenControls();
    }
    Ctl("Label7").text = "Time";
    m_plot.Clear();
    drawnViewStart = 0;
    drawnViewEnd = 0;
    if (m_member.minimumSpan > 0) {
        if (!(ViewEnd - ViewStart > m_member.minimumSpan)) {
            m_dialogs.ShowMessage("Not enough data to plot");
            return;
        }
    } else if (!(ViewStart < ViewEnd)) {
        return;
    }

    // Record positions of the view: its first and last record are left out of ranges,
    // extremes, segments and energy alike.
    const int first = PositionIndex(ViewStart + 1);
    const int last = PositionIndex(ViewEnd - 1);
    const std::size_t count = m_member.series.size();

    for (std::size_t s = 0; s < count; ++s) {
        const SeriesRow& row = m_member.series[s];
        const RecordArray& values = *m_series[s];
        if (row.ownRange) {
            double top = 0;
            double bottom = 0;
            for (int i = first; i <= last; ++i) {
                const double v = values[i];
                if (i == first || v > top) {
                    top = v;
                }
                if (i == first || v < bottom) {
                    bottom = v;
                }
            }
            m_top[s] = top;
            m_bottom[s] = bottom;
        } else if (ScaleFlag == 1) {
            m_bottom[s] = 0;
            m_top[s] = MaxLimitOf(static_cast<int>(s));
        } else {
            // Unscaled: the range always holds 0 and the limit's side.
            double top = 0;
            double bottom = MaxLimitOf(static_cast<int>(s));
            for (int i = first; i <= last; ++i) {
                const double v = values[i];
                if (v < bottom) {
                    bottom = v;
                }
                if (v > top) {
                    top = v;
                }
            }
            m_top[s] = top;
            m_bottom[s] = bottom;
        }
    }

    for (std::size_t s = 0; s < count; ++s) {
        const SeriesRow& row = m_member.series[s];
        const auto start = [&](const ExtremeStart& rule, double& extreme) {
            if (rule.kind == ExtremeStart::Kind::Value) {
                extreme = rule.value;
            } else if (rule.kind == ExtremeStart::Kind::ChannelLimit) {
                extreme = MaxLimitOf(static_cast<int>(s));
            }
        };
        start(row.maxStart, m_max[s]);
        start(row.minStart, m_min[s]);
        const RecordArray& values = *m_series[s];
        for (int i = first; i <= last; ++i) {
            const double v = values[i];
            if (v > m_max[s]) {
                m_max[s] = v;
            }
            if (v < m_min[s]) {
                m_min[s] = v;
            }
        }
    }

    const std::string startText = DayFractionText(LogTime[PositionIndex(ViewStart)]);
    Ctl("stime").text = startText;
    Ctl("Time1h").text = FirstTwo(startText);
    Ctl("Time1m").text = LastTwo(startText);
    const std::string finishText = DayFractionText(LogTime[PositionIndex(ViewEnd)]);
    Ctl("ftime").text = finishText;
    Ctl("Time2h").text = FirstTwo(finishText);
    Ctl("Time2m").text = LastTwo(finishText);

    m_plot.SetScaleWidth(ViewEnd - ViewStart - 2);
    drawnViewStart = ViewStart;
    drawnViewEnd = ViewEnd;
    for (std::size_t s = 0; s < count; ++s) {
        const double range = m_top[s] - m_bottom[s];
        if (!(range > 0)) {
            m_height[s] = 2;
        } else if (m_member.scaleRule == ScaleRule::PlusTwentieth) {
            m_height[s] = range + range / 20;
        } else {
            m_height[s] = 1.05 * range;
        }
    }

    // Zero lines: in record numbers, not offsets from the view, and without the margin, so the
    // line lies a margin above value 0 and starts inside the surface after a zoom.
    for (int s : m_member.zeroLines) {
        const auto z = static_cast<std::size_t>(s);
        m_plot.SetScaleHeight(m_height[z]);
        if (m_top[z] > 0 && m_bottom[z] < 0) {
            m_plot.Line(ViewStart, m_top[z], ViewEnd, m_top[z], kZeroLineColour);
        }
    }

    std::vector<std::int32_t> colours(count);
    for (std::size_t s = 0; s < count; ++s) {
        colours[s] = ColourOf(static_cast<int>(s));
    }
    std::vector<double> totals(count, 0.0);
    // Every line of a record is drawn before the next record's: later series lie over earlier
    // ones point by point.
    for (int i = first; i <= last; ++i) {
        const double x1 = i - ViewStart - 1;
        const double x2 = i - ViewStart;
        for (std::size_t s = 0; s < count; ++s) {
            if (m_showFlag[s] != 1) {
                continue;
            }
            const RecordArray& values = *m_series[s];
            m_plot.SetScaleHeight(m_height[s]);
            const double range = m_top[s] - m_bottom[s];
            const std::int32_t colour = colours[s];
            if (m_member.numericCheck && !std::isfinite(values[i])) {
                m_dialogs.ShowMessage("REJECTED SOME CORRUPT DATA");
                continue;
            }
            if (range > 0) {
                const double margin = range / 40;
                m_plot.Line(x1, (m_top[s] - values[i - 1]) + margin, x2,
                            (m_top[s] - values[i]) + margin, colour);
            } else {
                // A flat series runs along the middle of a scale height of 2.
                m_plot.Line(x1, 1, x2, 1, colour);
            }
        }
        for (std::size_t s = 0; s < count; ++s) {
            if (!m_member.series[s].energyLabel.empty()) {
                totals[s] = totals[s] + ((*m_series[s])[i] / 3600) * LogInterval[i];
            }
        }
    }
    for (std::size_t s = 0; s < count; ++s) {
        const SeriesRow& row = m_member.series[s];
        if (!row.energyLabel.empty()) {
            Ctl(row.energyLabel).text = FormatPattern(totals[s], "###0") + " Wh";
        }
    }
}

// ---- Cursors and extremes ------------------------------------------------------------------

void GraphWindow::Readouts(double x) {
    // A position beyond the arrays fails here and ends the move: what was written stays.
    Ctl("vt").text = DayFractionText(LogTime[PositionIndex(x + ViewStart)]);
    const int position = PositionIndex(std::trunc(x) + ViewStart);
    for (std::size_t s = 0; s < m_member.series.size(); ++s) {
        const SeriesRow& row = m_member.series[s];
        const ReadoutText& rule = row.readoutText;
        const double value = (*m_series[s])[position];
        std::string text =
            rule.kind == ReadoutText::Kind::Rounded
                ? FormatGeneral(RoundPlaces(value, rule.places)) + std::string(rule.unit)
                : FormatPattern(value, rule.pattern);
        if (rule.windUnits) {
            text += m_state.settings.WSUnits;
        }
        Ctl(row.readout).text = std::move(text);
    }
}

void GraphWindow::Plot_MouseDown(double x, double /*y*/) {
    DragActive = 1;
    if (ZoomLock == 0 && RecordCount > 1) {
        // The position of the press replaces ViewStart at once: a plain click shifts what the
        // readouts and the next chart use.
        ViewStart = x;
        Ctl("Time1h").text = FirstTwo(Ctl("vt").text);
        Ctl("Time1m").text = LastTwo(Ctl("vt").text);
    }
}

void GraphWindow::Plot_MouseMove(double x, double /*y*/) {
    if (RecordCount <= 1) {
        return;
    }
    try {
        Readouts(x);
    } catch (const Failure&) {
        return;
    }
    if (ZoomLock == 0 && DragActive == 1) {
        // The rubber band along the top edge; it stays until the next clear.
        m_plot.Line(ViewStart, 0, x, 0, kRed);
    }
}

void GraphWindow::Plot_MouseUp(double x, double /*y*/) {
    DragActive = 0;
    Trapped([&] {
        if (x > ViewStart && RecordCount > 1 && ZoomLock == 0) {
            ViewEnd = x;
            Ctl("Time2h").text = FirstTwo(Ctl("vt").text);
            Ctl("Time2m").text = LastTwo(Ctl("vt").text);
            ZoomLock = 1;
            // The chart writes the time boxes anew from the records at the two positions; the
            // log is then read again with them and drawn in full width.
            TimeChart();
            ReadLog();
        }
        ZoomLock = 0;
    });
}

void GraphWindow::ReadoutLabel_Click(int series) {
    const auto s = static_cast<std::size_t>(series);
    const ExtremeText& rule = m_member.series[s].extremeText;
    const auto number = [&](double value) {
        return rule.pattern.empty() ? FormatGeneral(value) : FormatPattern(value, rule.pattern);
    };
    std::string text;
    // One toggle serves every label of the window; the first click shows the minimum.
    if (extremeToggleSet && ExtremeToggle == 1) {
        ExtremeToggle = 0;
        text = std::string(rule.maxPrefix) + number(m_max[s]) + std::string(rule.unit);
    } else {
        ExtremeToggle = 1;
        const double deciding = rule.decidingSeries == kNoSeries
                                    ? m_min[s]
                                    : m_min[static_cast<std::size_t>(rule.decidingSeries)];
        if (rule.fixedMinimum.empty() || deciding > 0) {
            text = std::string(rule.minPrefix) + number(m_min[s]) + std::string(rule.unit);
        } else {
            text = std::string(rule.fixedMinimum);
        }
    }
    extremeToggleSet = true;
    Ctl(m_member.series[s].readout).text = std::move(text);
}

}  // namespace brizalog
