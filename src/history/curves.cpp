#include <cmath>

#include "catalogue/failure.h"
#include "history/distribution.h"
#include "history/graph_window.h"

namespace brizalog {

namespace {

constexpr std::int32_t kYellow = 65535;

// k of the reference curve: the cube law of a turbine, with the settled exponent 0.33 (not a
// third) and factor 1.1. A width of 0 leaves the curve without points, so k does not matter.
double CurveFactor(double height, double width) {
    if (height < 0) {
        throw Failure(FailureKind::InvalidArgument);
    }
    return width == 0 ? 0 : 1.1 * std::pow(height, 0.33) / width;
}

constexpr double kLongestWindCurve = 32767;

// y of power `w` on the curve charts: P at the top edge with no margin, 0 at the bottom.
double PowerY(double limit, double w) {
    return (limit - w) / 20 + (limit - w);
}

}  // namespace

void CountPowerBands(const RecordArray& watts, int first, int last, int bands,
                     std::vector<double>& bins) {
    bins.assign(bands >= 0 ? static_cast<std::size_t>(bands) + 1 : 0, 0.0);
    if (bands <= 0) {
        return;
    }
    const double highest = bands * 10.0;
    for (int i = first; i <= last; ++i) {
        const double w = watts[i];
        if (!(w > -1 && w < highest)) {
            continue;
        }
        // A value lies in at most two bands, next to floor(w / 10); each is tested with the
        // same comparisons as a pass per band, on exact whole limits.
        const int near = static_cast<int>(std::floor(w / 10));
        for (int j = near - 1; j <= near + 1; ++j) {
            if (j < 0 || j >= bands) {
                continue;
            }
            const double lo = j * 10.0;
            const double hi = (j + 1) * 10.0;
            if (w > lo - 1 && w < hi) {
                bins[static_cast<std::size_t>(j)] += 1;
            }
        }
    }
}

void GraphWindow::PlotGridLines() {
    // In the surface's scale as it stands when called: the old scale of the previous chart.
    const double w = m_plot.ScaleWidth();
    const double h = m_plot.ScaleHeight();
    m_plot.SetDrawWidth(1);
    for (double x : {0.0, w / 4, w / 2, 3 * w / 4, w}) {
        m_plot.Line(x, 0, x, h, kYellow);
    }
    for (double y : {0.0, h / 4, h / 2, 3 * h / 4, h}) {
        m_plot.Line(0, y, w, y, kYellow);
    }
}

void GraphWindow::XAxisRPM_Click() {
    HideForCurves();
    Ctl("Label7").text = "Power vs RPM";
    m_plot.Clear();
    PlotGridLines();
    const ChannelTable& table = m_state.channels;
    const double p = table.MaxLimit[17];
    const double r = table.MaxLimit[13];
    const double height = p / 20 + p;
    const double width = r / 20 + r;
    m_plot.SetScaleHeight(height);
    m_plot.SetScaleWidth(width);
    m_plot.SetDrawWidth(1);
    const double k = CurveFactor(height, width);
    // The curve runs to the left of i.
    for (int i = 1; i <= r; ++i) {
        const double y = PowerY(p, std::pow(k * i, 3));
        m_plot.Line(i, y, i - 1, y - 1, kGreen);
    }
    // No test of RecordCount: with nothing loaded the marks run over positions 0 to 0.
    m_plot.SetDrawWidth(3);
    const RecordArray& watts = Series(m_member.curveWatts);
    const RecordArray& rpm = Series(m_member.curveRpm);
    for (int i = PositionIndex(ViewStart); i <= PositionIndex(ViewEnd); ++i) {
        const double y = PowerY(p, watts[i]);
        m_plot.Line(rpm[i], y, rpm[i], y - 1, kRed);
    }
    m_plot.SetDrawWidth(1);
}

void GraphWindow::XAxisWind_Click() {
    Control& scaling = Ctl("CheckScaling");
    if (!scaling.checked) {
        // Checking the box runs its click, which draws the time chart first.
        scaling.checked = true;
        CheckScaling_Click();
    }
    ScaleFlag = scaling.checked ? 1 : 0;
    scaling.text = ScaleFlag == 1 ? "Scaled" : "Unscaled";
    if (RecordCount <= 1) {
        return;
    }
    Ctl("Label7").text = "Power vs WindSpeed";
    m_plot.Clear();
    PlotGridLines();
    const ChannelTable& table = m_state.channels;
    const double p = table.MaxLimit[17];
    const double s = table.MaxLimit[12];
    const double height = p / 20 + p;
    const double width = s / 20 + s;
    m_plot.SetScaleWidth(width);
    m_plot.SetScaleHeight(height);
    m_plot.SetDrawWidth(1);
    const double k = CurveFactor(height, width);
    // Up to the wind series' range top of the last time chart, MaxLimit[12] once it ran
    // Scaled; the curve runs to the right of i.
    const double top = m_top[static_cast<std::size_t>(m_member.curveWind)];
    // The curve's counter is a whole number of the limits' 16-bit kind: a logged wind beyond it
    // is the failure Overflow, not a curve of millions of steps.
    if (top > kLongestWindCurve) {
        throw Failure(FailureKind::Overflow);
    }
    for (int i = 1; i <= top; ++i) {
        const double y = PowerY(p, std::pow(k * i, 3));
        m_plot.Line(i + 1, y, i, y - 1, kGreen);
    }
    m_plot.SetDrawWidth(4);
    const RecordArray& watts = Series(m_member.curveWatts);
    const RecordArray& wind = Series(m_member.curveWind);
    for (int i = PositionIndex(ViewStart); i <= PositionIndex(ViewEnd); ++i) {
        const double y = PowerY(p, watts[i]);
        m_plot.Line(wind[i] + 1, y, wind[i], y - 1, kRed);
    }
    m_plot.SetDrawWidth(1);
}

void GraphWindow::Distribution_Click() {
    HideForCurves();
    m_plot.Clear();
    Ctl("Label7").text = "Frequency vs Power";
    const int bands = static_cast<int>(std::trunc(m_state.channels.MaxLimit[17] / 10.0));
    if (bands > kMaxBands) {
        throw Failure(FailureKind::SubscriptOutOfRange);
    }
    std::vector<double> bins;
    CountPowerBands(Series(m_member.curveWatts), PositionIndex(ViewStart), PositionIndex(ViewEnd),
                    bands, bins);
    double top = 0;
    for (double count : bins) {
        if (count > top) {
            top = count;
        }
    }
    PlotGridLines();
    m_plot.SetScaleWidth(bands / 20.0 + bands);
    m_plot.SetScaleHeight(top / 20 + top);
    m_plot.SetDrawWidth(5);
    // Each bar rises from the bottom edge.
    for (std::size_t i = 0; i < bins.size(); ++i) {
        if (bins[i] > 0) {
            const double x = static_cast<double>(i) + 1;
            m_plot.Line(x, 21 * top / 20 - bins[i], x, 21 * top / 20, kRed);
        }
    }
    m_plot.SetDrawWidth(1);
}

}  // namespace brizalog
