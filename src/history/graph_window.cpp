#include "history/graph_window.h"

#include <cmath>
#include <limits>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/local_time.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace {

// The controls that the power curves and the distribution hide and the time axis shows again.
constexpr std::string_view kHiddenByCurves[] = {
    "CheckVolts", "CheckWatts", "CheckAmps", "CheckWS",      "CheckRPM",     "Collate",
    "CSV",        "ftime",      "rv",        "sv",           "stime",        "vt",
    "vv",         "wv",         "av",        "CheckScaling", "DisplayButton"};

constexpr std::string_view kXAxisChoices[] = {"XAxisTime", "XAxisRPM", "XAxisWind", "Distribution"};

}  // namespace

GraphWindow::GraphWindow(const GraphMember& member, SharedState& state,
                         std::filesystem::path folder, Clock& clock, Dialogs& dialogs, Plot& plot)
    : m_member(member),
      m_state(state),
      m_folder(std::move(folder)),
      m_clock(clock),
      m_dialogs(dialogs),
      m_finitePlot(plot),
      m_plot(m_finitePlot) {
    caption = std::string(member.designCaption);
    Add("Dir1", "");
    Add("File1", "*.txt");
    Add("FileName", "FileName");
    Add("Label15", "Log History");
    Add("Time1h", "00");
    Add("Time1m", "00");
    Add("Time2h", "23");
    Add("Time2m", "59");
    Add("DisplayButton", "DISPLAY");
    Add("CheckScaling", "Scaled").checked = true;
    if (member.hasCollate) {
        Add("Collate", "Collate");
    }
    Add("CSV", ".CSV");
    if (member.print != PrintKind::None) {
        Add("PrintButton", "PRINT");
    }
    Add("ExitGraphsButton", "Exit");
    if (member.hasXAxisChoices) {
        Add("Frame1", "x axis parameter");
        Add("XAxisTime", "time").checked = true;
        Add("XAxisRPM", "rpm");
        Add("XAxisWind", "wind speed");
        Add("Distribution", "Distribution");
    }
    Add("Plot", "").colour = kPlotScreenColour;
    Add("Label7", "Time");
    Add("stime", "Start");
    Add("ftime", "Finish");
    Add("vt", "");
    const std::size_t count = member.series.size();
    for (const SeriesRow& row : member.series) {
        Add(std::string(row.box), std::string(row.designCaption));
        m_series.push_back(std::make_unique<RecordArray>());
    }
    for (const SeriesRow& row : member.series) {
        Add(std::string(row.readout), "");
    }
    for (const SeriesRow& row : member.series) {
        if (!row.energyLabel.empty()) {
            Add(std::string(row.energyLabel), "");
        }
    }
    m_showFlag.assign(count, 0);
    m_max.assign(count, 0);
    m_min.assign(count, 0);
    m_top.assign(count, 0);
    m_bottom.assign(count, 0);
    m_height.assign(count, 0);
}

Control& GraphWindow::Add(std::string name, std::string text) {
    Control& control = m_storage.emplace_back();
    control.text = std::move(text);
    m_controls.Add(std::move(name), control);
    return control;
}

Control& GraphWindow::Ctl(std::string_view name) {
    Control* control = m_controls.Find(name);
    if (control == nullptr) {
        // A control that this member lacks: the rule that names it has no effect here.
        static Control scratch;
        scratch = Control{};
        return scratch;
    }
    return *control;
}

void GraphWindow::Trapped(const std::function<void()>& body) {
    try {
        body();
    } catch (const Failure& failure) {
        m_dialogs.ShowMessage(failure.what());
    }
}

std::filesystem::path GraphWindow::Logs(std::string_view name) const {
    return InFolder(m_folder, "/logs/" + std::string(name));
}

double GraphWindow::MaxLimitOf(int series) const {
    const SeriesRow& row = m_member.series[static_cast<std::size_t>(series)];
    return row.fixedLimit >= 0 ? row.fixedLimit : m_state.channels.MaxLimit[row.channel];
}

std::int32_t GraphWindow::ColourOf(int series) const {
    const SeriesRow& row = m_member.series[static_cast<std::size_t>(series)];
    return row.fixedColour >= 0 ? row.fixedColour : m_state.channels.LineColour[row.channel];
}

int GraphWindow::FindSeriesByBox(std::string_view name) const {
    for (std::size_t i = 0; i < m_member.series.size(); ++i) {
        if (m_member.series[i].box == name) {
            return static_cast<int>(i);
        }
    }
    return kNoSeries;
}

int GraphWindow::FindSeriesByReadout(std::string_view name) const {
    for (std::size_t i = 0; i < m_member.series.size(); ++i) {
        if (m_member.series[i].readout == name) {
            return static_cast<int>(i);
        }
    }
    return kNoSeries;
}

std::vector<std::string> GraphWindow::File1Items() const {
    if (file1Folder.empty()) {
        return {};
    }
    return ListFiles(InFolder(m_folder, file1Folder), m_controls.Find("File1")->text);
}

// ---- Load and the clicks of log selection ------------------------------------------------

void GraphWindow::Form_Load() {
    loaded = true;
    Trapped([&] {
        if (m_member.needsSystemType && m_state.settings.SystemType == 0) {
            return;  // the window stays unset: no folder, no pattern, no boxes
        }
        Ctl("Dir1").text = "/logs";
        file1Folder = "/logs";
        Ctl("File1").text = std::string(m_member.pattern);
        if (m_member.captionOf == m_member.name || !m_lookup) {
            caption = m_state.settings.PersonalString;
        } else {
            GraphWindow& other = m_lookup(m_member.captionOf);
            if (!other.loaded) {
                other.Form_Load();
            }
            other.caption = m_state.settings.PersonalString;
        }
        DragActive = 0;
        ViewStart = 0;
        ViewEnd = 0;
        ScaleFlag = 1;
        Ctl("CheckScaling").checked = true;
        const ChannelTable& table = m_state.channels;
        for (std::size_t i = 0; i < m_member.series.size(); ++i) {
            const SeriesRow& row = m_member.series[i];
            Control& box = Ctl(row.box);
            const int state =
                row.fixedBoxState >= 0 ? row.fixedBoxState : table.enableGRAPHING[row.channel];
            m_showFlag[i] = state;
            box.checked = state == 1;
            if (row.channel != 0) {
                box.foreColour = table.LineColour[row.channel];
                if (!row.keepCaption) {
                    box.text = table.ChannelName[row.channel];
                }
            }
        }
        if (m_member.emptyResult == EmptyResult::TodayThenThis) {
            loadFlag = 1;
        }
        // The hourly logs of short intervals are not tried: the list alone leads to them.
        Ctl("FileName").text =
            std::string(m_member.prefix) + DateTag(m_clock.Now(), false) + ".txt";
        LogFileFound = FileExists(InFolder(m_folder, "/logs/" + Ctl("FileName").text));
        if (LogFileFound) {
            ReadLog();
        }
    });
}

void GraphWindow::Dir1_Change(std::string_view folder) {
    Ctl("Dir1").text = std::string(folder);
    // GraphRE's list cannot leave the logs folder, whatever folder is chosen.
    file1Folder = m_member.logsFolderFixed ? "/logs" : std::string(folder);
}

void GraphWindow::File1_Click(std::string_view name) {
    Trapped([&] {
        if (m_member.hasCollate && Ctl("Collate").checked) {
            Collate();
        }
        Ctl("FileName").text = std::string(name);
        Ctl("Time1h").text = "00";
        Ctl("Time1m").text = "00";
        Ctl("Time2h").text = "23";
        Ctl("Time2m").text = "59";
        ReadLog();
    });
}

void GraphWindow::DisplayButton_Click() {
    Trapped([&] { ReadLog(); });
}

void GraphWindow::ExitGraphsButton_Click() {
    loaded = false;
    visible = false;
    unloadedByExit = true;
}

void GraphWindow::SeriesBox_Click(int series) {
    m_showFlag[static_cast<std::size_t>(series)] =
        Ctl(m_member.series[static_cast<std::size_t>(series)].box).checked ? 1 : 0;
    if (RecordCount > 1) {
        TimeChart();
    }
}

void GraphWindow::CheckScaling_Click() {
    ScaleFlag = Ctl("CheckScaling").checked ? 1 : 0;
    Ctl("CheckScaling").text = ScaleFlag == 1 ? "Scaled" : "Unscaled";
    if (RecordCount > 1) {
        TimeChart();
    }
}

void GraphWindow::SelectOption(std::string_view name) {
    for (std::string_view choice : kXAxisChoices) {
        if (Control* option = m_controls.Find(choice)) {
            option->checked = choice == name;
        }
    }
}

void GraphWindow::HideForCurves() {
    for (std::string_view name : kHiddenByCurves) {
        if (Control* control = m_controls.Find(name)) {
            control->visible = false;
        }
    }
}

void GraphWindow::ShowHiddenControls() {
    for (std::string_view name : kHiddenByCurves) {
        if (Control* control = m_controls.Find(name)) {
            control->visible = true;
        }
    }
}

void GraphWindow::XAxisTime_Click() {
    ShowHiddenControls();
    m_plot.Clear();
    TimeChart();
}

bool GraphWindow::Click(std::string_view name, std::string_view item) {
    Control* control = m_controls.Find(name);
    if (control == nullptr) {
        return false;
    }
    if (!control->visible || !control->enabled) {
        return true;  // the user cannot reach it
    }
    if (name == "File1") {
        File1_Click(item);
    } else if (name == "Dir1") {
        Dir1_Change(item);
    } else if (name == "DisplayButton") {
        DisplayButton_Click();
    } else if (name == "ExitGraphsButton") {
        ExitGraphsButton_Click();
    } else if (name == "CheckScaling") {
        control->checked = !control->checked;
        Trapped([&] { CheckScaling_Click(); });
    } else if (name == "Collate") {
        control->checked = !control->checked;
    } else if (name == "CSV") {
        Trapped([&] { ExportCsv(); });
    } else if (name == "PrintButton") {
        Trapped([&] { PrintButton_Click(); });
    } else if (name == "XAxisTime") {
        SelectOption(name);
        Trapped([&] { XAxisTime_Click(); });
    } else if (name == "XAxisRPM") {
        SelectOption(name);
        Trapped([&] { XAxisRPM_Click(); });
    } else if (name == "XAxisWind") {
        SelectOption(name);
        Trapped([&] { XAxisWind_Click(); });
    } else if (name == "Distribution") {
        SelectOption(name);
        Trapped([&] { Distribution_Click(); });
    } else if (const int series = FindSeriesByBox(name); series != kNoSeries) {
        control->checked = !control->checked;
        Trapped([&] { SeriesBox_Click(series); });
    } else if (const int readout = FindSeriesByReadout(name); readout != kNoSeries) {
        Trapped([&] { ReadoutLabel_Click(readout); });
    }
    return true;
}

bool GraphWindow::SetText(std::string_view name, std::string_view text) {
    Control* control = m_controls.Find(name);
    if (control == nullptr) {
        return false;
    }
    const bool isBox =
        name == "CheckScaling" || name == "Collate" || FindSeriesByBox(name) != kNoSeries;
    if (name == "Dir1") {
        Dir1_Change(text);
    } else if (isBox) {
        // A change of value is the box's click; a hidden box cannot be reached.
        if ((ParseNumber(text) != 0) != control->checked) {
            Click(name);
        }
    } else {
        control->text = std::string(text);
    }
    return true;
}

// ---- Dump --------------------------------------------------------------------------------

std::vector<std::pair<std::string, std::string>> GraphWindow::Dump() const {
    std::vector<std::pair<std::string, std::string>> items;
    const auto item = [&](std::string name, std::string value) {
        items.emplace_back(std::move(name), std::move(value));
    };
    const auto number = [&](std::string name, double value) {
        item(std::move(name), FormatShortest(value));
    };
    item("caption", caption);
    number("loaded", loaded ? 1 : 0);
    number("visible", visible ? 1 : 0);
    number("RecordCount", RecordCount);
    number("ViewStart", ViewStart);
    number("ViewEnd", ViewEnd);
    number("ScaleFlag", ScaleFlag);
    for (std::size_t s = 0; s < m_member.series.size(); ++s) {
        number("ShowFlag(" + std::string(m_member.series[s].box) + ")", m_showFlag[s]);
    }
    number("DragActive", DragActive);
    number("ZoomLock", ZoomLock);
    item("LogFileFound", LogFileFound ? "True" : "False");
    item("ExtremeToggle", extremeToggleSet ? std::to_string(ExtremeToggle) : "Empty");
    if (m_member.emptyResult == EmptyResult::TodayThenThis) {
        number("LoadFlag", loadFlag);
    }
    item("File1.folder", file1Folder);
    const std::vector<std::string> files = File1Items();
    for (std::size_t i = 0; i < files.size(); ++i) {
        item("File1.item(" + std::to_string(i) + ")", files[i]);
    }
    number("Plot.background", m_plot.BackColour());
    number("Plot.scalewidth", m_plot.ScaleWidth());
    number("Plot.scaleheight", m_plot.ScaleHeight());
    number("Plot.drawwidth", m_plot.DrawWidth());
    // Each control's text, then only what differs from a plain control: a dump that a reader
    // can take in at a glance.
    for (const auto& [name, control] : m_controls.items()) {
        if (name == "Plot") {
            continue;
        }
        item(name, control->text);
        if (control->checked) {
            number(name + ".checked", 1);
        }
        if (!control->visible) {
            number(name + ".visible", 0);
        }
        if (!control->enabled) {
            number(name + ".enabled", 0);
        }
        if (control->colour != kDefaultColour) {
            number(name + ".colour", control->colour);
        }
        if (control->foreColour != kDefaultColour) {
            number(name + ".forecolour", control->foreColour);
        }
    }
    return items;
}

// ---- Times -------------------------------------------------------------------------------

std::string DayFractionText(double fraction) {
    const double seconds = std::round(fraction * 86400.0);
    long long whole = static_cast<long long>(seconds);
    whole %= 86400;
    if (whole < 0) {
        whole += 86400;
    }
    const int hours = static_cast<int>(whole / 3600);
    const int minutes = static_cast<int>(whole % 3600 / 60);
    std::string text = "00:00";
    text[0] = static_cast<char>('0' + hours / 10);
    text[1] = static_cast<char>('0' + hours % 10);
    text[3] = static_cast<char>('0' + minutes / 10);
    text[4] = static_cast<char>('0' + minutes % 10);
    return text;
}

bool ParseClockTime(std::string_view text, double& fraction) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    int parts[3] = {0, 0, 0};
    int count = 0;
    int digits = 0;
    for (char c : text) {
        if (c >= '0' && c <= '9') {
            if (++digits > 2) {
                return false;
            }
            parts[count] = parts[count] * 10 + (c - '0');
        } else if (c == ':' && digits > 0 && count < 2) {
            ++count;
            digits = 0;
        } else {
            return false;
        }
    }
    if (count == 0 || digits == 0 || parts[0] > 23 || parts[1] > 59 || parts[2] > 59) {
        return false;
    }
    fraction = (parts[0] * 3600.0 + parts[1] * 60.0 + parts[2]) / 86400.0;
    return true;
}

int PositionIndex(double position) {
    const double rounded = std::nearbyint(position);
    if (!(rounded >= std::numeric_limits<int>::min() &&
          rounded <= std::numeric_limits<int>::max())) {
        throw Failure(FailureKind::Overflow);
    }
    return static_cast<int>(rounded);
}

}  // namespace brizalog
