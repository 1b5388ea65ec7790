#include <cmath>

#include "acquisition/brizalog.h"
#include "catalogue/failure.h"
#include "catalogue/patterns.h"
#include "catalogue/system_types.h"

namespace brizalog {

// One pass per cut frame: scale, extremes, sums, power, status text, panel. It has no trap of
// its own; a failure passes to the intake, which leaves the arrays partly updated until the
// next frame.
void Brizalog::CalculateChannels() {
    SharedState& s = m_state;
    auto& value = s.ChannelValue;
    auto& watts = s.ChannelWatts;
    auto& extreme = s.DailyExtreme;
    const auto& offset = s.calibration.ADCOffset;
    const auto& divider = s.calibration.ADCDivider;  // a multiplier, despite its name

    s.ErrorContext = "calculations error";
    m_timer2.Enable();
    m_model.DataOK.colour = kGreen;
    ++s.GoodDataCount;
    m_model.goodDATAcounter.text = std::to_string(s.GoodDataCount);

    // The clamp stands before the multiplication: a negative divider gives negative values.
    auto scale = [&](int n) {
        double d = Finite(s.RawValue[n] - offset[n]);
        if (d < 0) {
            d = 0;
        }
        value[n] = Finite(d * divider[n]);
    };
    for (int n = 1; n <= 8; ++n) {
        scale(n);
        if (value[n] > extreme[n - 1]) {
            extreme[n - 1] = value[n];
        }
    }
    for (int n = 9; n <= 11; ++n) {
        scale(n);
    }
    for (int n = 12; n <= 16; ++n) {
        scale(n);
        if (value[n] > extreme[n - 1]) {
            extreme[n - 1] = value[n];
        }
    }
    // A voltage of exactly 0 is a dead input, never an extreme.
    for (int n = 9; n <= 11; ++n) {
        if (value[n] > extreme[n - 1] && value[n] > 0) {
            extreme[n - 1] = value[n];
        }
    }
    for (int n = 9; n <= 11; ++n) {
        if (value[n] < extreme[n + 15] && value[n] > 0) {
            extreme[n + 15] = value[n];
        }
    }
    // Temperatures from the unscaled readings, in every system type: elsewhere RawValue[17] and
    // [21] are the raw readings of channels W1 and W5.
    auto temperature = [&](int raw, int maximum, int minimum) {
        const double t = s.RawValue[raw];
        if (t > extreme[maximum] && t > 0) {
            extreme[maximum] = t;
        }
        if (t < extreme[minimum] && t > 0) {
            extreme[minimum] = t;
        }
    };
    temperature(17, 27, 28);
    temperature(21, 29, 30);

    for (int n = 1; n <= 16; ++n) {
        s.SumValue[n] = Finite(s.SumValue[n] + value[n]);
    }
    const double v1 = value[9];

    auto setWatts = [&](int n, double w) {
        watts[n] = Finite(w);
        s.SumWatts[n] = Finite(s.SumWatts[n] + watts[n]);
        if (watts[n] > extreme[n + 15]) {
            extreme[n + 15] = watts[n];
        }
    };
    // Check1 is read at each frame: ticked, turbine 2's power is its amps times the second
    // voltage.
    auto altVolts2 = [&](int n) {
        return n == 2 && m_model.Check1.checked ? value[2] * value[10] : value[n] * v1;
    };
    switch (PowerRuleOf(s.settings.SystemType)) {
        case PowerRule::AmpsTimesV1WithAltVolts2:
            for (int n = 1; n <= 8; ++n) {
                setWatts(n, altVolts2(n));
            }
            break;
        case PowerRule::Metered3:
            for (int n = 2; n <= 4; ++n) {
                setWatts(n, s.RawValue[n + 16]);
            }
            break;
        case PowerRule::Metered6:
            for (int n : {2, 3, 4, 6, 7, 8}) {
                setWatts(n, s.RawValue[n + 16]);
            }
            break;
        case PowerRule::AmpsTimesV1:
            for (int n = 1; n <= 8; ++n) {
                setWatts(n, value[n] * v1);
            }
            break;
        case PowerRule::DcAndMains:
            for (int n = 1; n <= 4; ++n) {
                setWatts(n, value[n] * v1);
            }
            for (int n = 5; n <= 8; ++n) {
                setWatts(n, value[n] * kMainsVolts);
            }
            break;
        case PowerRule::DcAltVolts2AndMains:
            for (int n = 1; n <= 4; ++n) {
                setWatts(n, altVolts2(n));
            }
            for (int n = 5; n <= 8; ++n) {
                setWatts(n, value[n] * kMainsVolts);
            }
            break;
        case PowerRule::None:
            break;
    }

    // The status text: the battery-based systems leave PersonalString out of it.
    std::string& title = m_model.caption;
    switch (s.settings.SystemType) {
        case 0:
            title = FormatPattern(value[9], "#0.00");
            title.append("V ").append(FormatPattern(value[1], "#0.0"));
            title.append("A ").append(FormatPattern(watts[1], "###0"));
            title.append("W ").append(s.settings.PersonalString);
            break;
        case 1:
        case 2:
        case 5:
        case 6:
        case 7:
        case 8:
            title = "Battery = ";
            title.append(FormatPattern(value[9], "#0.00")).append("V ");
            break;
        case 3:
            title.clear();
            for (int n = 2; n <= 4; ++n) {
                title.append(FormatPattern(watts[n], "###0")).append("W ");
            }
            title.append(s.settings.PersonalString);
            break;
        case 4:
            title.clear();
            for (int n : {2, 3, 4, 6, 7}) {
                title.append(FormatPattern(watts[n], "###0")).append("W ");
            }
            title.append(FormatPattern(watts[8], "###0")).append("W  ");
            title.append(s.settings.PersonalString);
            break;
        default:
            break;
    }

    RefreshPanel();

    s.PlotWatts1 = watts[1];
    s.PlotWatts2 = watts[2];
    s.PlotRPM1 = value[13];
    s.PlotRPM2 = value[14];
}

}  // namespace brizalog
