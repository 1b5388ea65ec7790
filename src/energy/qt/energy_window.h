#pragma once

#include <QWidget>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "energy/energy_view.h"

class QCheckBox;
class QChart;
class QChartView;
class QComboBox;
class QDateEdit;
class QDoubleSpinBox;
class QLabel;
class QLineSeries;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTabWidget;
class QTableWidget;
class QThread;

namespace brizalog {

// The Energy window: bars of energy per day of a month, per ISO week or month of a year, or per
// year, one colour per power slot in its channel's colour, with a table of totals, costs and
// marks beside them; and a chart of power over a week, a month or a year. It is not modal: the
// logs folder is read on a thread of its own at low priority, behind a progress bar that can be
// cancelled, so frames, logging ticks and other windows go on meanwhile. It never writes a log,
// Whours.txt or a configuration file; its own index, options.cfg's tariff, CSV files and images.
class EnergyWindow : public QWidget {
    Q_OBJECT

public:
    EnergyWindow(SharedState& state, std::filesystem::path folder, CivilDate today,
                 QWidget* parent = nullptr);
    ~EnergyWindow() override;

    // Starts reading the logs folder; the charts follow when it is read.
    void Load();
    // True while the logs folder or a power range is being read.
    bool Busy() const { return m_reading != nullptr; }
    EnergyModel& model() { return m_model; }

    // The chart of the tab on top.
    QChartView* CurrentChartView() const;
    QChartView* barView() const { return m_barView; }
    QChartView* powerView() const { return m_powerView; }
    QTabWidget* tabs() const { return m_tabs; }
    // Power over `days` days (7, 31 or 366) from `from`.
    void ShowPower(const CivilDate& from, int days);
    // Writes the chart on top as a PNG in the spreadsheet folder, named as the CSV of the view;
    // false when it could not be written.
    bool SaveChartImage();
    std::filesystem::path ChartImagePath() const;
    void ExportCsv();

signals:
    // The book has been read (or the reading was cancelled) and the window shows it.
    void bookShown();
    // A power range has been read and drawn.
    void powerShown();

protected:
    void closeEvent(class QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Job {
        std::atomic<bool> cancel{false};
    };
    QWidget* BuildTopBar();
    QWidget* BuildBars();
    QWidget* BuildPower();
    QWidget* BuildStatus();
    // Runs `work` on a thread of its own, then `done` on this window's thread.
    void RunInBackground(std::function<void()> work, std::function<void()> done);
    void StopReading();
    void BookRead(std::optional<EnergyBook> book);
    void Render();
    void RenderBars(const std::vector<PeriodEnergy>& periods);
    void RenderTable(const std::vector<PeriodEnergy>& periods);
    void RenderPower(const std::vector<PowerPoint>& points, const CivilDate& from, int days);
    // Gives each power line the points that the chart's width between `x0` and `x1` can show.
    void ThinPower(double x0, double x1);
    void SaveTariff();
    void Status(const QString& text);
    void Drill(int index);
    QString Tip(const PeriodEnergy& p) const;
    void StyleChart(QChart* chart) const;

    SharedState& m_state;
    std::filesystem::path m_folder;
    EnergyModel m_model;
    std::vector<PeriodEnergy> m_shown;

    std::shared_ptr<Job> m_job;
    QThread* m_reading = nullptr;
    unsigned m_runs = 0;  // readings started or stopped: a late finish of a stopped one is ignored

    QComboBox* m_view = nullptr;
    QLabel* m_period = nullptr;
    QCheckBox* m_stacked = nullptr;
    QDoubleSpinBox* m_price = nullptr;
    QLineEdit* m_currency = nullptr;
    QTabWidget* m_tabs = nullptr;
    QChartView* m_barView = nullptr;
    QTableWidget* m_table = nullptr;
    QComboBox* m_span = nullptr;
    QDateEdit* m_from = nullptr;
    QChartView* m_powerView = nullptr;
    // Each power line whole, in the chart's milliseconds and watts: a zoom draws from these.
    struct PowerLine {
        QLineSeries* series;
        std::vector<double> xs;
        std::vector<double> ys;
    };
    std::vector<PowerLine> m_powerLines;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QLabel* m_status = nullptr;
};

// The colour of a channel's LineColour (blue × 65536 + green × 256 + red).
QColor ChannelColour(std::int32_t colour);

}  // namespace brizalog
