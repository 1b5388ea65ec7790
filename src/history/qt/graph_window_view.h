#pragma once

#include <QDialog>
#include <QPointF>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "history/chart_scales.h"
#include "history/graph_window.h"
#include "history/graph_windows.h"

class QCheckBox;
class QComboBox;
class QFileSystemWatcher;
class QLabel;
class QListWidget;
class QPushButton;
class QToolButton;
class QSplitter;
class QWheelEvent;

namespace brizalog {

class ChartFrame;
class PlotCanvas;

// The window of every member of the graph family: one view over the engine, laid out from the
// member's table. It renders the engine's controls after each event and forwards the user's
// clicks, text and mouse on the chart. The chart is drawn by the engine on a PlotCanvas, which
// the view never draws on itself.
class GraphWindowView : public QDialog, private WindowPrinter {
    Q_OBJECT

public:
    GraphWindowView(const GraphMember& member, SharedState& state, std::filesystem::path folder,
                    Clock& clock, Dialogs& dialogs, QWidget* parent = nullptr);
    ~GraphWindowView() override;

    GraphWindow& engine() { return m_engine; }
    PlotCanvas& canvas() { return *m_canvas; }
    // Runs the window's load; the window is shown by exec() afterwards.
    void Load();
    void Render();
    // Writes the chart as a PNG in the spreadsheet folder, named as the view's CSV export, and
    // says where; false when it could not be written.
    bool SaveChartImage();
    // The file that SaveChartImage writes for the view as it stands.
    std::filesystem::path ChartImagePath() const;
    // The same page as a PDF beside it; says where, false when it could not be written.
    bool SaveChartPdf();
    std::filesystem::path ChartPdfPath() const;
    // The chart with its title, scales and legend, as saved.
    QImage ChartPage();

    ChartFrame& chartFrame() { return *m_frame; }
    QSplitter& splitter() { return *m_splitter; }
    // The series whose values the left scale shows: the one picked in the series panel, or the
    // first one shown when that one is not.
    int ScaleSeries() const;
    void PickSeries(int series);
    // Zoom by the wheel or the keys: the time boxes change, then DisplayButton's operation
    // reads the log again. `steps` above 0 narrow the view around `anchor` (minutes of the day).
    void ZoomSteps(int steps, double anchor);
    void Pan(double fraction);
    // "Whole day": the view before the last zoom, and then the whole day.
    void GoBack();
    std::size_t zoomDepth() const { return m_history.size(); }

public slots:
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void PrintForm(std::string_view window) override;
    void Forward(const std::string& control, const std::string& item = {});
    QWidget* BuildTopBar();
    QWidget* BuildSelection();
    QWidget* BuildChart();
    QWidget* BuildSeriesPanel();
    QWidget* BuildActions();
    void RenderFiles();
    void RenderScales();
    void TrackZooms();
    void ShowRange(MinuteRange range, bool back);
    void ShowCrosshair(QPointF pixel);
    void SetScalesShown(bool shown);
    void FoldFiles(bool folded);
    bool HandleChartKey(int key);
    void ShowReadoutTip();

    std::filesystem::path m_folder;
    SharedState& m_state;
    Dialogs& m_dialogs;
    PlotCanvas* m_canvas;
    ChartFrame* m_frame = nullptr;
    QSplitter* m_splitter = nullptr;
    QWidget* m_fileColumn = nullptr;
    QCheckBox* m_scalesBox = nullptr;
    QToolButton* m_foldButton = nullptr;
    GraphWindow m_engine;
    // GraphDEMO's load sets GraphBZ's caption and GraphCC_QX's sets GraphCC's: those windows
    // come into memory hidden, here, for as long as this one is open.
    GraphWindows m_siblings;

    std::map<std::string, QWidget*> m_widgets;     // by the name of the engine's control
    std::vector<std::function<void()>> m_renders;  // each widget from its control
    QComboBox* m_dir = nullptr;
    QListWidget* m_files = nullptr;
    QFileSystemWatcher* m_watcher = nullptr;
    bool m_filesStale = true;
    int m_rowBeforePress = -1;  // the day marked when the mouse went down on the list
    QString m_listedFolder;

    int m_picked = kNoSeries;
    // The picture the scales were worked out for: the canvas's clears, the series, the mode.
    std::tuple<std::uint64_t, int, int> m_scalesKey{~0ull, 0, 0};
    ZoomHistory m_history;
    // What the last read kept: the log, its record count, its first and last times.
    std::tuple<std::string, int, double, double> m_shown;
    std::optional<MinuteRange> m_shownRange;
    bool m_goingBack = false;
    int m_wheelEighths = 0;                // a wheel turned less than a notch so far
    std::optional<QPointF> m_crosshairAt;  // the mouse over the chart, in its pixels
    int m_fileColumnWidth = 160;
    bool m_sized = false;  // the splitter's first sizes are set
};

}  // namespace brizalog
