#include "logging/log_records.h"

#include <array>

#include "catalogue/files.h"
#include "catalogue/patterns.h"
#include "catalogue/system_types.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

constexpr std::string_view kShortVolts = "##.00";
constexpr std::string_view kVolts = "##0.00";

constexpr std::array<LogFile, 1> kWindmillDemo{{{"WD", LogFamily::WD, kShortVolts}}};
constexpr std::array<LogFile, 1> kWindmills{{{"BZ", LogFamily::BZ, kShortVolts}}};
constexpr std::array<LogFile, 1> kMeter{{{"CC", LogFamily::CC, kVolts}}};
constexpr std::array<LogFile, 1> kHouse{{{"RE", LogFamily::RE, kVolts}}};
constexpr std::array<LogFile, 3> kAllChannels{{
    {"BZ", LogFamily::BZ, kVolts},
    {"RE", LogFamily::RE, kVolts},
    {"ML", LogFamily::ML, kVolts},
}};

constexpr std::array<std::span<const LogFile>, kSystemTypeCount> kLogFilesBySystem{{
    kWindmillDemo,
    kWindmills,
    kWindmills,
    kMeter,
    kMeter,
    kHouse,
    kHouse,
    kHouse,
    kAllChannels,
}};

// "<A1>4.4</A1>" with the channel's own log tag.
void AppendTagged(std::string& line, const SharedState& state, int channel, double value,
                  std::string_view pattern) {
    const std::string& tag = state.channels.XMLsoftware[channel];
    line += "<";
    line += tag;
    line += ">";
    line += FormatPattern(value, pattern);
    line += "</";
    line += tag;
    line += ">";
}

}  // namespace

std::span<const LogFile> LogFilesOf(int systemType) {
    if (!IsKnownSystemType(systemType)) {
        return {};
    }
    return kLogFilesBySystem[static_cast<std::size_t>(systemType)];
}

std::string LogFileLiteral(std::string_view prefix, const std::string& dateTag) {
    std::string literal = "/logs/";
    literal += prefix;
    literal += "_";
    literal += dateTag;
    literal += ".txt";
    return literal;
}

std::string LogRecord(const LogFile& file, const std::string& time, const SharedState& state) {
    const auto& avg = state.AvgValue;
    const auto& watts = state.AvgWatts;
    std::string line = "<T>" + time + "</T><L>" + FormatGeneral(state.settings.LogDelay) + "</L>";
    switch (file.family) {
        case LogFamily::WD:
            // The only family with the running watt-hours, outside any tag.
            line += "<V>" + FormatPattern(avg[9], file.voltsPattern);
            line += "</V><I>" + FormatPattern(avg[1], "##0.0");
            line += "</I><R>" + FormatPattern(avg[13], "###0");
            line += "</R><S>" + FormatPattern(avg[12], "##0");
            line += "</S>  " + FormatPattern(state.WattHours[1], "##0.000");
            line += "Wh";
            break;
        case LogFamily::BZ:
            AppendTagged(line, state, 9, avg[9], file.voltsPattern);
            for (int n = 1; n <= 4; ++n) {
                AppendTagged(line, state, n, avg[n], "##0.0");
            }
            // Second turbine, first turbine, then the wind: the order readers have always had.
            AppendTagged(line, state, 14, avg[14], "###0");
            AppendTagged(line, state, 13, avg[13], "###0");
            AppendTagged(line, state, 12, avg[12], "##0");
            break;
        case LogFamily::CC: {
            static constexpr std::array<std::pair<std::string_view, int>, 6> kMeterFields{{
                {"<W1>", 2},
                {"</W1><W2>", 3},
                {"</W2><W3>", 4},
                {"</W3><W4>", 6},
                {"</W4><W5>", 7},
                {"</W5><W6>", 8},
            }};
            for (const auto& [text, slot] : kMeterFields) {
                line += text;
                line += FormatPattern(watts[slot], "###0");
            }
            // Two reserved fields, always zero. The ">" of the second opening tag has been
            // missing from every meter log ever written, so the line ends "<C20.0</C2>" and a
            // reader looking for "<C2>" finds nothing.
            line += "</W6><C1>" + FormatPattern(0, "#0.0");
            line += "</C1><C2" + FormatPattern(0, "#0.0");
            line += "</C2>";
            break;
        }
        case LogFamily::RE:
            AppendTagged(line, state, 9, avg[9], file.voltsPattern);
            // Power slot j is logged under the tag of channel j + 16.
            for (int slot = 1; slot <= 8; ++slot) {
                AppendTagged(line, state, slot + 16, watts[slot], "###0");
            }
            break;
        case LogFamily::ML:
            AppendTagged(line, state, 9, avg[9], file.voltsPattern);
            AppendTagged(line, state, 10, avg[10], kVolts);
            AppendTagged(line, state, 11, avg[11], kVolts);
            AppendTagged(line, state, 15, avg[15], "###0");
            AppendTagged(line, state, 16, avg[16], "###0");
            break;
    }
    line += kCrLf;
    return line;
}

std::string SpreadsheetLiteral(const std::string& dateTag) {
    return "/Excel/" + dateTag + ".xls";
}

std::string SpreadsheetHeader(const std::string& wsUnits) {
    std::string text =
        "<html><body><table><tr><td><b>Volts</b></td><td><b>Amps</b></td><td><b>Power</b></td>"
        "<td><b>RPM</b></td><td><b>";
    text += wsUnits;
    text += "</b></td><td><b></b></td><td><b>Time</b></td></tr>";
    text += kCrLf;
    text += kCrLf;
    return text;
}

std::string SpreadsheetRow(const SharedState& state, const std::string& longTime) {
    std::string row = "<tr><td>";
    row += FormatGeneral(state.SumValue[9]);
    row += "</td><td>";
    row += FormatGeneral(state.SumValue[1]);
    row += "</td><td>";
    row += FormatGeneral(state.SumWatts[1]);
    row += "</td><td>";
    row += FormatGeneral(state.SumValue[13]);
    row += "</td><td>";
    row += FormatGeneral(state.SumValue[12]);
    row += "</td><td>";
    row += "<td><td>";
    row += longTime;
    row += "</td></tr>";
    row += kCrLf;
    row += kCrLf;
    return row;
}

}  // namespace brizalog
