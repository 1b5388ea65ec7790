#pragma once

#include <QDialog>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "history/graph_window.h"
#include "history/graph_windows.h"

class QComboBox;
class QFileSystemWatcher;
class QLabel;
class QListWidget;
class QPushButton;

namespace brizalog {

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

public slots:
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void PrintForm(std::string_view window) override;
    void Forward(const std::string& control, const std::string& item = {});
    QWidget* BuildTopBar();
    QWidget* BuildSelection();
    QWidget* BuildChart();
    QWidget* BuildSeriesPanel();
    void RenderFiles();
    void ShowReadoutTip(double x, double y);

    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    PlotCanvas* m_canvas;
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
};

}  // namespace brizalog
