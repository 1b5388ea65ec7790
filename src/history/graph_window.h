#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/indexed_array.h"
#include "catalogue/plot.h"
#include "catalogue/services.h"
#include "catalogue/state.h"
#include "history/graph_family.h"

namespace brizalog {

// The per-record arrays of a window: indexes 0 to 10000, record k at index k, 0 never filled.
using RecordArray = IndexedArray<double, 0, 10000>;
inline constexpr int kRecordLimit = 9999;

// Prints a window's image on the default printer; a failure is the caller's to trap.
class WindowPrinter {
public:
    virtual ~WindowPrinter() = default;
    virtual void PrintForm(std::string_view window) = 0;
};

class GraphWindow;

// Where a window finds its sibling windows: GraphDEMO's load sets GraphBZ's caption and so brings
// that window into memory, hidden; GraphCC_QX does the same to GraphCC.
using WindowLookup = std::function<GraphWindow&(std::string_view name)>;

// One window of the graph family: its model (controls by name, per-window state, arrays) and its
// handlers. It reads the channel table and settings from the shared state, today's date from the
// clock, the logs from the program folder, and shows messages through the dialogs. A failure that
// the system leaves without a handler shows its message and ends the handler; the window stays.
class GraphWindow {
public:
    GraphWindow(const GraphMember& member, SharedState& state, std::filesystem::path folder,
                Clock& clock, Dialogs& dialogs, Plot& plot);
    GraphWindow(const GraphWindow&) = delete;
    GraphWindow& operator=(const GraphWindow&) = delete;

    const GraphMember& member() const { return m_member; }
    void SetWindowLookup(WindowLookup lookup) { m_lookup = std::move(lookup); }
    void SetPrinter(WindowPrinter* printer) { m_printer = printer; }

    // ---- Handlers. Each traps the failures the system leaves unhandled (see the class note).
    void Form_Load();
    // A click on the control `name`; `item` names the clicked entry of File1 or Dir1. A check
    // box or an option changes its state first, as a click by the user does; a hidden control
    // cannot be reached and nothing happens. False when the window has no such control.
    bool Click(std::string_view name, std::string_view item = {});
    // Sets the text of a text box, or the value ("0" or "1") of a check box; a check box whose
    // value changes runs its click handler.
    bool SetText(std::string_view name, std::string_view text);
    void Dir1_Change(std::string_view folder);
    void File1_Click(std::string_view name);
    void DisplayButton_Click();
    void Plot_MouseDown(double x, double y);
    void Plot_MouseMove(double x, double y);
    void Plot_MouseUp(double x, double y);
    void ExitGraphsButton_Click();

    // ---- Model.
    Control* Find(std::string_view name) const { return m_controls.Find(name); }
    const ControlRegistry& controls() const { return m_controls; }
    std::string caption;
    bool loaded = false;          // in memory
    bool visible = false;         // shown
    bool unloadedByExit = false;  // its next opening starts a fresh window
    // File1's folder, a literal under the program folder such as "/logs"; empty until the load
    // sets it. Dir1's folder is the text of Dir1, File1's pattern the text of File1.
    std::string file1Folder;
    std::vector<std::string> File1Items() const;

    int RecordCount = 0;
    double ViewStart = 0;
    double ViewEnd = 0;
    int ScaleFlag = 1;
    int DragActive = 0;
    int ZoomLock = 0;
    bool LogFileFound = false;
    int ExtremeToggle = 0;
    // The view the time chart last drew: a plain click moves ViewStart without drawing, and the
    // scales around the chart follow the picture, not the moved position.
    double drawnViewStart = 0;
    double drawnViewEnd = 0;
    bool extremeToggleSet = false;  // Empty until the first extreme click
    int loadFlag = 0;               // GraphRE: 1 until the first read that keeps nothing

    std::vector<std::string> LogRecords;
    RecordArray LogTime;
    RecordArray LogInterval;
    // One array per series of the member, in the member's order.
    const RecordArray& Series(int index) const {
        return *m_series[static_cast<std::size_t>(index)];
    }
    RecordArray& Series(int index) { return *m_series[static_cast<std::size_t>(index)]; }
    int ShowFlag(int index) const { return m_showFlag[static_cast<std::size_t>(index)]; }
    double ExtremeMax(int index) const { return m_max[static_cast<std::size_t>(index)]; }
    double ExtremeMin(int index) const { return m_min[static_cast<std::size_t>(index)]; }
    double RangeTop(int index) const { return m_top[static_cast<std::size_t>(index)]; }
    double RangeBottom(int index) const { return m_bottom[static_cast<std::size_t>(index)]; }
    // The scale height of the series in the last time chart, and its line colour.
    double SeriesHeight(int index) const { return m_height[static_cast<std::size_t>(index)]; }
    std::int32_t SeriesColour(int index) const { return ColourOf(index); }

    // The state, the file list and every control as NAME and VALUE, for the scenario runner.
    std::vector<std::pair<std::string, std::string>> Dump() const;

    // The operations of the charts, without the traps of the handlers.
    void ReadLog();
    void TimeChart();
    void XAxisRPM_Click();
    void XAxisWind_Click();
    void Distribution_Click();
    void XAxisTime_Click();
    void Collate();
    void ExportCsv();
    // The name of the view's export, without its extension: "BZ_2026_03_07_0815_1730". A
    // FileName without "." fails on the cut.
    std::string CsvName() const;
    void PrintButton_Click();

private:
    Control& Add(std::string name, std::string text);
    Control& Ctl(std::string_view name);
    void Trapped(const std::function<void()>& body);

    double MaxLimitOf(int series) const;
    std::int32_t ColourOf(int series) const;
    void SelectOption(std::string_view name);
    void ShowHiddenControls();
    void HideForCurves();
    void PlotGridLines();
    void CheckScaling_Click();
    void SeriesBox_Click(int series);
    void ReadoutLabel_Click(int series);
    void Readouts(double x);
    int FindSeriesByBox(std::string_view name) const;
    int FindSeriesByReadout(std::string_view name) const;
    double ReadTimeBoxes(std::string_view hours, std::string_view minutes) const;
    void Store(int target, double value, int record);
    std::filesystem::path Logs(std::string_view name) const;

    const GraphMember& m_member;
    SharedState& m_state;
    std::filesystem::path m_folder;
    Clock& m_clock;
    Dialogs& m_dialogs;
    FinitePlot m_finitePlot;
    Plot& m_plot;  // the window's surface, through m_finitePlot
    WindowLookup m_lookup;
    WindowPrinter* m_printer = nullptr;

    std::deque<Control> m_storage;
    ControlRegistry m_controls;
    std::vector<std::unique_ptr<RecordArray>> m_series;
    std::vector<int> m_showFlag;
    std::vector<double> m_max, m_min, m_top, m_bottom, m_height;
};

// "14:05": a time of the day, as a fraction of a day, in hours and minutes of two digits each.
std::string DayFractionText(double fraction);
// A clock time "h:mm", "hh:mm" or "hh:mm:ss" (hours 0 to 23) as a fraction of a day; false when the
// text is no time.
bool ParseClockTime(std::string_view text, double& fraction);
// Rounds a record position to an array index, as the platform does: halves to even.
int PositionIndex(double position);

}  // namespace brizalog
