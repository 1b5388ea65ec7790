#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/patterns.h"
#include "catalogue/system_types.h"
#include "displays/system_layouts.h"

namespace brizalog {

// ---- Layouts ---------------------------------------------------------------------------------

// The choice of layout is on disk before the panel changes: an index outside 0..9 rewrites the
// settings and leaves the panel as it was. 9 lays out as 0 but stays 9 until the next start.
void Brizalog::setsystem(int index) {
    auto& settings = m_state.settings;
    settings.SystemType = static_cast<std::int16_t>(index);
    m_model.Label15.text = "Systemtype " + std::to_string(index);
    const int layoutType = index == 9 ? 0 : index;
    if (IsKnownSystemType(layoutType)) {
        m_model.setsystem[layoutType].checked = true;
    }
    WriteSettingsFile(settings, m_folder);
    if (!IsKnownSystemType(layoutType)) {
        return;
    }
    const SystemLayout& layout = LayoutOf(layoutType);
    MainFormModel& m = m_model;

    m.Label11.text = layout.title;
    m.plotwindmill1.enabled = layout.plotwindmill1;
    m.plotwindmill2.enabled = layout.plotwindmill2;
    m.plot2windmills.enabled = layout.plotwindmill2;
    m.VUmeters.enabled = layout.VUmeters;
    m.batteryMonitor.enabled = layout.batteryMonitor;

    for (int t = 0; t < kSystemTypeCount; ++t) {
        m.setsystem[t].checked = false;
        m.logging[t].enabled = false;
        m.logTOfile[t].enabled = false;
        m.graphing[t].enabled = false;
        m.display[t].enabled = false;
    }
    m.setsystem[layoutType].checked = true;
    m.logging[layoutType].enabled = true;
    m.logTOfile[layoutType].enabled = true;
    m.graphing[layoutType].enabled = true;
    m.display[layoutType].enabled = true;
    m.NOW.enabled = true;
    m.setup.enabled = true;

    m.panelHeight = layout.panelHeight;
    for (std::string_view name : kPanelGroups) {
        m.controls.Find(name)->visible = false;
    }
    for (const GroupPlacement& placement : layout.groups) {
        Control& group = *m.controls.Find(placement.group);
        if (!placement.caption.empty()) {
            group.text = placement.caption;
        }
        if (placement.shown) {
            group.top = placement.top;
            group.visible = true;
        }
    }

    const ChannelTable& table = m_state.channels;
    auto d = [&](int n) { return table.enableDISPLAY[n] == 1; };
    auto h = [&](int n) { return table.HARDWAREenabled[n] == 1; };
    auto shownBy = [&](int n) { return d(n) && h(n); };
    for (const CellRule& rule : layout.cells) {
        bool shown = false;
        switch (rule.show) {
            case CellShow::ByChannel:
                shown = shownBy(rule.a);
                break;
            case CellShow::Always:
                shown = true;
                break;
            case CellShow::Hidden:
                shown = false;
                break;
            case CellShow::RuleW:
                shown = h(9) && h(rule.a) && d(rule.a) && d(9) && d(rule.b);
                break;
            case CellShow::RuleWWithB:
                shown = h(9) && h(rule.a) && d(rule.a) && d(9) && d(rule.b) && h(rule.b);
                break;
        }
        m.controls.Find(rule.cell)->visible = shown;
    }

    for (Control& cell : m.Frame5) {
        cell.visible = false;
    }
    for (const ChannelCellRule& rule : layout.channelCells) {
        const int k = rule.k;
        const int n = rule.channel;
        switch (rule.kind) {
            case ChannelCellKind::Temperature:
                m.Frame5[k].text = "temperature";
                m.Label3[k].text = "00.0C";
                m.Label3[k].visible = true;
                m.Label5[k].visible = false;
                m.Label13[k].visible = false;
                m.Frame5[k].visible = rule.shown;
                break;
            case ChannelCellKind::MeterChannel:
                m.Frame5[k].text = table.ChannelName[n];
                m.Frame5[k].visible = shownBy(n);
                m.Label5[k].visible = true;
                m.Label13[k].visible = true;
                m.Label3[k].visible = false;
                break;
            case ChannelCellKind::RuleL:
                m.Frame5[k].text = rule.caption;
                m.Frame5[k].visible = true;
                m.Label3[k].visible = shownBy(n);
                m.Label5[k].visible = shownBy(n) && shownBy(9);
                m.Label13[k].visible = shownBy(n) && shownBy(9);
                break;
        }
    }
    // Power needs the battery voltage: without it no rule-L cell shows watts or watt-hours.
    if (!h(9)) {
        for (const ChannelCellRule& rule : layout.channelCells) {
            if (rule.kind == ChannelCellKind::RuleL) {
                m.Label5[rule.k].visible = false;
                m.Label13[rule.k].visible = false;
            }
        }
    }
}

// ---- Panel refresh ---------------------------------------------------------------------------

// The rows of every type's refresh, in the order the cells are written. In system 0, and only
// there, the gates of rpm and wind are crossed: rpm follows the display flag of channel 12 and
// wind that of channel 13.
void Brizalog::BuildPanelRows() {
    MainFormModel& m = m_model;
    SharedState& s = m_state;
    const double* cv = &s.ChannelValue[0];
    const double* cw = &s.ChannelWatts[0];
    const double* wh = &s.WattHours[0];
    const double* raw = &s.RawValue[0];
    constexpr std::string_view kVolts = "#0.00 V";
    constexpr std::string_view kWattsPattern = "###0 W";
    constexpr std::string_view kWattHours = "####0 Wh";

    m_panelRows[0] = {
        {&m.Volts[0], cv + 9, kVolts, 9, 0},         {&m.Amps[0], cv + 1, "#0.00 A", 1, 0},
        {&m.RPM[0], cv + 13, "##0 rpm", 12, 0},      {&m.Wind[0], cv + 12, "#0.0", 13, 0, true},
        {&m.Watts[0], cw + 1, kWattsPattern, 17, 0}, {&m.Whours[0], wh + 1, kWattHours, 17, 0}};

    for (int type : {1, 2}) {
        auto& rows = m_panelRows[type];
        const int cells = type == 1 ? 2 : 4;
        const std::string_view rpm = type == 1 ? "##0 rpm" : "##0rpm";
        rows.push_back({&m.Volts[0], cv + 9, kVolts, 9, 0});
        for (int k = 0; k < cells; ++k) {
            rows.push_back({&m.Amps[k], cv + k + 1, "#0.00 A", k + 1, 0});
        }
        rows.push_back({&m.RPM[1], cv + 14, rpm, 14, 0});
        rows.push_back({&m.RPM[0], cv + 13, rpm, 13, 0});
        rows.push_back({&m.Wind[0], cv + 12, "#0.0", 12, 0, true});
        for (int k = 0; k < cells; ++k) {
            rows.push_back({&m.Watts[k], cw + k + 1, kWattsPattern, k + 17, 0});
        }
        for (int k = 0; k < cells; ++k) {
            rows.push_back({&m.Whours[k], wh + k + 1, kWattHours, k + 17, 0});
        }
    }

    // The meter temperatures are written whatever the display flags say.
    for (int type : {3, 4}) {
        auto& rows = m_panelRows[type];
        rows.push_back({&m.Label3[0], raw + 17, "#0.0 C", 0, 0});
        if (type == 4) {
            rows.push_back({&m.Label3[4], raw + 21, "#0.0 C", 0, 0});
        }
        for (int k = 1; k <= 3; ++k) {
            rows.push_back({&m.Label5[k], cw + k + 1, kWattsPattern, k + 18, 0});
            rows.push_back({&m.Label13[k], wh + k + 1, kWattHours, k + 18, 0});
        }
        if (type == 4) {
            for (int k = 5; k <= 7; ++k) {
                rows.push_back({&m.Label5[k], cw + k + 1, kWattsPattern, k + 17, 0});
                rows.push_back({&m.Label13[k], wh + k + 1, kWattHours, k + 17, 0});
            }
        }
    }

    for (int type : {5, 6, 7}) {
        auto& rows = m_panelRows[type];
        const int cells = type == 5 ? 4 : 8;
        rows.push_back({&m.Volts[0], cv + 9, kVolts, 9, 0});
        for (int k = 0; k < cells; ++k) {
            rows.push_back({&m.Label3[k], cv + k + 1, "#0.0 A", k + 1, 0});
        }
        if (type == 7) {
            rows.push_back({&m.Label6, cv + 10, kVolts, 10, 0});
            rows.push_back({&m.Label7, cv + 11, kVolts, 11, 0});
        }
        for (int k = 0; k < cells; ++k) {
            rows.push_back({&m.Label5[k], cw + k + 1, kWattsPattern, k + 17, 0});
            rows.push_back({&m.Label13[k], wh + k + 1, kWattHours, k + 17, 0});
        }
    }

    auto& rows = m_panelRows[8];
    for (int k = 0; k <= 1; ++k) {
        rows.push_back({&m.Amps[k], cv + k + 1, "#0.0 A", k + 17, k + 1});
        rows.push_back({&m.Watts[k], cw + k + 1, kWattsPattern, k + 17, k + 1});
        rows.push_back({&m.Whours[k], wh + k + 1, kWattHours, k + 17, k + 1});
    }
    for (int k = 2; k <= 7; ++k) {
        rows.push_back({&m.Label3[k], cv + k + 1, "#0.0 A", k + 17, k + 1});
        rows.push_back({&m.Label5[k], cw + k + 1, kWattsPattern, k + 17, k + 1});
        rows.push_back({&m.Label13[k], wh + k + 1, kWattHours, k + 17, k + 1});
    }
    rows.push_back({&m.Volts[0], cv + 9, kVolts, 9, 0});
    rows.push_back({&m.Label6, cv + 10, kVolts, 10, 0});
    rows.push_back({&m.Label7, cv + 11, kVolts, 11, 0});
    rows.push_back({&m.Wind[0], cv + 12, "#0.0", 12, 0, true});
    rows.push_back({&m.RPM[0], cv + 13, "##0rpm", 13, 0});
    rows.push_back({&m.RPM[1], cv + 14, "##0rpm", 14, 0});
    rows.push_back({&m.Label9, cv + 15, "##0", 15, 0});
    rows.push_back({&m.Label12, cv + 16, "##0", 16, 0});
}

// A cell whose display flag is 0 keeps its last text; the layout hides it.
void Brizalog::RefreshPanel() {
    const int type = m_state.settings.SystemType;
    if (!IsKnownSystemType(type)) {
        return;
    }
    const auto& display = m_state.channels.enableDISPLAY;
    for (const PanelRow& row : m_panelRows[type]) {
        if ((row.gate1 != 0 && display[row.gate1] != 1) ||
            (row.gate2 != 0 && display[row.gate2] != 1)) {
            continue;
        }
        row.cell->text = FormatPattern(*row.value, row.pattern);
        if (row.windUnits) {
            row.cell->text.append(m_state.settings.WSUnits);
        }
    }
}

// ---- Click readouts --------------------------------------------------------------------------
// A click shows the day's maximum in the clicked cell until the next frame overwrites it.

void Brizalog::Volts_Click(int) {
    m_model.Volts[0].text = FormatPattern(m_state.DailyExtreme[8], "#0.00");
}

// A click on any amps cell writes the first channel's maximum into all four.
void Brizalog::Amps_Click(int) {
    const std::string text = FormatPattern(m_state.DailyExtreme[0], "#0.0");
    for (Control& cell : m_model.Amps) {
        cell.text = text;
    }
}

void Brizalog::Watts_Click(int index) {
    m_model.Watts[index].text = FormatPattern(m_state.DailyExtreme[index + 16], "###0");
}

void Brizalog::Wind_Click(int) {
    m_model.Wind[0].text = FormatPattern(m_state.DailyExtreme[11], "##0.0");
}

void Brizalog::RPM_Click(int) {
    m_model.RPM[0].text = FormatPattern(m_state.DailyExtreme[12], "#00");
    m_model.RPM[1].text = FormatPattern(m_state.DailyExtreme[13], "#00");
}

// The temperature cells toggle between the day's highest and lowest, the highest first. In
// system 4 the first temperature gets the amps text, since its test asks for system 3 only.
void Brizalog::Label3_Click(int index) {
    const auto& extreme = m_state.DailyExtreme;
    const int type = m_state.settings.SystemType;
    auto toggle = [&](int& flag, int maximum, int minimum) {
        if (flag == 0) {
            flag = 1;
            m_model.Label3[index].text = "Max " + FormatPattern(extreme[maximum], "#0.0 C");
        } else {
            flag = 0;
            m_model.Label3[index].text = "Min " + FormatPattern(extreme[minimum], "#0.0 C");
        }
    };
    if (index == 0 && type == 3) {
        toggle(m_temperatureToggle1, 27, 28);
    } else if (index == 4 && type == 4) {
        toggle(m_temperatureToggle2, 29, 30);
    } else {
        m_model.Label3[index].text = "Max " + FormatPattern(extreme[index], "#0.0 A");
    }
}

void Brizalog::Label5_Click(int index) {
    m_model.Label5[index].text = "Max " + FormatPattern(m_state.DailyExtreme[index + 16], "###0 W");
}

// Shows the extreme of channel 9, as Volts(0) does, not that of channel 10.
void Brizalog::Label6_Click() {
    m_model.Label6.text = "Max " + FormatPattern(m_state.DailyExtreme[8], "#0.00");
}

void Brizalog::Label7_Click() {
    m_model.Label7.text = "Max " + FormatPattern(m_state.DailyExtreme[10], "#0.00");
}

void Brizalog::Label9_Click() {
    m_model.Label9.text = "Max " + FormatPattern(m_state.DailyExtreme[14], "#00");
}

void Brizalog::Label12_Click() {
    m_model.Label12.text = "Max " + FormatPattern(m_state.DailyExtreme[15], "#00");
}

bool Brizalog::ClickPanel(std::string_view name, int index) {
    if (name == "Volts") {
        Volts_Click(index);
    } else if (name == "Amps") {
        Amps_Click(index);
    } else if (name == "Watts") {
        Watts_Click(index);
    } else if (name == "Wind") {
        Wind_Click(index);
    } else if (name == "RPM") {
        RPM_Click(index);
    } else if (name == "Label3") {
        Label3_Click(index);
    } else if (name == "Label5") {
        Label5_Click(index);
    } else if (name == "Label6") {
        Label6_Click();
    } else if (name == "Label7") {
        Label7_Click();
    } else if (name == "Label9") {
        Label9_Click();
    } else if (name == "Label12") {
        Label12_Click();
    } else if (name == "Check1") {
        m_model.Check1.checked = !m_model.Check1.checked;
        Check1_Click();
    } else {
        // Label13, Whours and the other controls have no click of their own.
        return false;
    }
    return true;
}

}  // namespace brizalog
