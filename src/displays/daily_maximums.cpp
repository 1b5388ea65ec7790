#include "displays/daily_maximums.h"

#include <initializer_list>

#include "catalogue/patterns.h"

namespace brizalog {

namespace {

// The patterns of the rows, by their first row; the wind row adds WSUnits.
struct RowPattern {
    int firstRow;
    std::string_view pattern;
};
constexpr RowPattern kPatterns[] = {
    {0, "#0.0 A"}, {8, "#0.00 V"}, {11, "#0.0 "},   {12, "##00 RPM"},
    {14, "#00"},   {16, "###0 W"}, {24, "#0.00 V"}, {27, "#0.0 C"},
};
constexpr int kWindRow = 11;

std::string_view PatternOf(int row) {
    std::string_view pattern;
    for (const RowPattern& p : kPatterns) {
        if (row >= p.firstRow) {
            pattern = p.pattern;
        }
    }
    return pattern;
}

// The rows of each system type: channels with a MAX row, channels with a MIN row, and the
// number of temperature rows from row 27. Systems 3 and 4 take channels 18 to 20 and 22 to 24,
// one lower than the rows that their setup forms offer, and are kept so.
struct TypeRows {
    std::initializer_list<int> maxChannels;
    std::initializer_list<int> minChannels;
    int temperatureRows;
};
const TypeRows& RowsOf(int systemType) {
    static const TypeRows kTypes[] = {
        {{1, 9, 12, 13, 17}, {9}, 0},
        {{1, 2, 9, 12, 13, 14, 17, 18}, {9}, 0},
        {{1, 2, 3, 4, 9, 12, 13, 14, 17, 18, 19, 20}, {9}, 0},
        {{18, 19, 20}, {}, 2},
        {{18, 19, 20, 22, 23, 24}, {}, 4},
        {{1, 2, 3, 4, 9, 17, 18, 19, 20}, {9}, 0},
        {{1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23, 24}, {9}, 0},
        {{1, 2, 3, 4, 5, 6, 7, 8, 9, 17, 18, 19, 20, 21, 22, 23, 24}, {9}, 0},
        {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24},
         {9, 10, 11},
         0},
    };
    return kTypes[systemType];
}

constexpr int kFirstMinimumRow = 24;  // of channel 9
constexpr int kFirstTemperatureRow = 27;

}  // namespace

DailyMaximums::DailyMaximums(SharedState& state)
    : MonitorWindow("dailyMaximums", "All channels Recent HIGHS and Voltage channels LOWS", 1000),
      m_state(state) {
    ResetAllMaxMins.text = "Reset ALL Max-Mins";
    // Row by row, caption beside value, as the window shows them.
    for (int row = 0; row < kRows; ++row) {
        const std::string index = "(" + std::to_string(row) + ")";
        controls.Add("Channel" + index, Channel[row]);
        controls.Add("value" + index, value[row]);
    }
    controls.Add("ResetAllMaxMins", ResetAllMaxMins);
}

void DailyMaximums::Form_Load() {
    for (int row = 0; row < kRows; ++row) {
        Channel[row].visible = false;
        value[row].visible = false;
    }
    const int systemType = m_state.settings.SystemType;
    if (systemType >= 0 && systemType <= 8) {
        const ChannelTable& table = m_state.channels;
        const auto show = [&](int row, int channel, std::string_view kind) {
            if (table.HARDWAREenabled[channel] != 1) {
                return;
            }
            Channel[row].text = std::string(kind) + table.ChannelName[channel];
            for (Control* item : {&Channel[row], &value[row]}) {
                item->visible = true;
                item->foreColour = table.LineColour[channel];
            }
        };
        const TypeRows& rows = RowsOf(systemType);
        for (int channel : rows.maxChannels) {
            show(channel - 1, channel, "MAX ");
        }
        for (int channel : rows.minChannels) {
            show(kFirstMinimumRow + channel - 9, channel, "MIN ");
        }
        for (int i = 0; i < rows.temperatureRows; ++i) {
            const int row = kFirstTemperatureRow + i;
            Channel[row].text = i % 2 == 0 ? "MAX TEMPERATURE" : "MIN TEMPERATURE";
            Channel[row].visible = true;
            value[row].visible = true;
        }
    }
    Timer1.Enable();
}

void DailyMaximums::Timer1_Timer() {
    for (int row = 0; row < kRows; ++row) {
        std::string text = FormatPattern(m_state.DailyExtreme[row], PatternOf(row));
        if (row == kWindRow) {
            text += m_state.settings.WSUnits;
        }
        value[row].text = std::move(text);
    }
}

void DailyMaximums::ResetAllMaxMins_Click() {
    auto& extreme = m_state.DailyExtreme;
    for (int i = 0; i < kRows; ++i) {
        extreme[i] = 0;
    }
    for (int i : {24, 25, 26, 28, 30}) {
        extreme[i] = 1000;
    }
}

void DailyMaximums::ClickControl(std::string_view control) {
    if (control == "ResetAllMaxMins") {
        ResetAllMaxMins_Click();
    }
}

}  // namespace brizalog
