// The desktop windows of the monitors, each a thin view of its core model.

#include <QFontDatabase>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "displays/bar_meters.h"
#include "displays/battery_monitor.h"
#include "displays/daily_maximums.h"
#include "displays/log_preview.h"
#include "displays/performance_plot.h"
#include "displays/qt/monitor_view.h"
#include "displays/raw_data_viewers.h"
#include "ui/control_view.h"
#include "ui/plot_canvas.h"
#include "ui/stale_shade.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

// Channel colours are chosen for a dark background: yellow and cyan are common among them.
constexpr const char* kDarkPanel =
    "QFrame#panel { background-color: #1d1f21; border-radius: 4px; }"
    "QFrame#panel QLabel { color: #d8d8d8; }";

QLabel* Figure(QWidget* parent, const char* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("0000.00 km/h")));
    return label;
}

QPushButton* Button(MonitorView* view, QWidget* parent, const Control& control,
                    const std::function<void()>& click) {
    auto* button = new QPushButton(ToQt(control.text), parent);
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, view, click);
    return button;
}

// ---- Battery monitors --------------------------------------------------------------------

// A label whose figure grows with it, so that a tile made large is read across the room.
class FittingLabel : public ClickableLabel {
public:
    using ClickableLabel::ClickableLabel;

protected:
    void resizeEvent(QResizeEvent* event) override {
        ClickableLabel::resizeEvent(event);
        QFont big = font();
        const QFontMetricsF metrics(big);
        const double points = big.pointSizeF();
        const double widthFit =
            width() * 0.9 / metrics.horizontalAdvance(QStringLiteral("888.88 V")) * points;
        const double heightFit = height() * 0.8 / metrics.height() * points;
        const double fit = std::max(12.0, std::min(widthFit, heightFit));
        if (std::abs(fit - points) > 0.5) {
            big.setPointSizeF(fit);
            setFont(big);
        }
    }
};

// A tile to be read across the room: the reading in large figures on its state colour, the
// caption over it (a click there closes the window), the bank's voltage below.
class BatteryView : public MonitorView {
public:
    BatteryView(SharedState& state, BatteryMonitor::Variant variant, TimerBackend& timers)
        : MonitorView(timers) {
        auto monitor = std::make_unique<BatteryMonitor>(state, variant);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        m_tile = new QFrame(this);
        m_tile->setObjectName(QStringLiteral("tile"));
        m_caption = ClickLabel("Label1");
        m_caption->setToolTip(QStringLiteral("Click to close"));
        m_voltage = new FittingLabel(this);
        m_voltage->setObjectName(QStringLiteral("voltage"));
        m_voltage->setCursor(Qt::PointingHandCursor);
        connect(m_voltage, &ClickableLabel::clicked, this, [this] { Forward("voltage"); });
        m_voltage->setToolTip(QStringLiteral("Click for the minimum, again for the maximum"));
        m_voltage->setAlignment(Qt::AlignCenter);
        QFont big = m_voltage->font();
        big.setPointSizeF(big.pointSizeF() * 3.2);
        big.setBold(true);
        m_voltage->setFont(big);
        m_voltage->setMinimumSize(QFontMetrics(big).horizontalAdvance(QStringLiteral("888.88 V")),
                                  QFontMetrics(big).height());
        m_system = new QLabel(m_tile);
        m_system->setObjectName(QStringLiteral("SystemVoltage"));
        m_system->setAlignment(Qt::AlignCenter);

        auto* tileLayout = new QVBoxLayout(m_tile);
        tileLayout->addWidget(m_caption, 0, Qt::AlignHCenter);
        tileLayout->addWidget(m_voltage, 1);
        tileLayout->addWidget(m_system);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(6, 6, 6, 6);
        layout->addWidget(m_tile);
        new StaleShade(m_tile);
        resize(380, 220);
    }

private:
    void RenderModel() override {
        const BatteryMonitor& m = *m_model;
        const QColor tile = m.voltage.colour == kDefaultColour ? QColor(0xc8, 0xc8, 0xc8)
                                                               : ToQColor(m.voltage.colour);
        // The tile's colour is the battery's state; the figures take black or white, whichever
        // reads on it. The caption's own colour, where the monitor gives one, stays.
        const QString style = QStringLiteral(
                                  "QFrame#tile { background-color: %1; border-radius: 8px; }"
                                  "QFrame#tile QLabel { color: %2; }")
                                  .arg(tile.name(), TextOn(tile).name());
        if (m_tile->styleSheet() != style) {
            m_tile->setStyleSheet(style);
        }
        ShowLabel(m_voltage, m.voltage);
        ShowLabel(m_caption, m.Label1);
        const QString system = m.SystemVoltage.text.empty()
                                   ? QString()
                                   : ToQt(m.SystemVoltage.text) + QStringLiteral(" V system");
        if (m_system->text() != system) {
            m_system->setText(system);
        }
    }

    BatteryMonitor* m_model;
    QFrame* m_tile;
    ClickableLabel* m_caption;
    FittingLabel* m_voltage;
    QLabel* m_system;
};

// ---- Daily maximums ------------------------------------------------------------------------

class DailyMaximumsView : public MonitorView {
public:
    DailyMaximumsView(SharedState& state, TimerBackend& timers) : MonitorView(timers) {
        auto monitor = std::make_unique<DailyMaximums>(state);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* panel = new QFrame(this);
        panel->setObjectName(QStringLiteral("panel"));
        panel->setStyleSheet(QString::fromLatin1(kDarkPanel));
        auto* grid = new QGridLayout(panel);
        grid->setHorizontalSpacing(0);
        grid->setVerticalSpacing(2);
        for (int row = 0; row < DailyMaximums::kRows; ++row) {
            const std::string index = "(" + std::to_string(row) + ")";
            m_captions[row] = new QLabel(panel);
            m_captions[row]->setObjectName(ToQt("Channel" + index));
            m_values[row] = Figure(panel, ("value" + index).c_str());
            grid->addWidget(m_captions[row], row, 0);
            grid->addWidget(m_values[row], row, 1);
        }
        auto* reset =
            Button(this, this, m_model->ResetAllMaxMins, [this] { Forward("ResetAllMaxMins"); });
        reset->setObjectName(QStringLiteral("ResetAllMaxMins"));

        // 31 rows are taller than a laptop's screen at 200 %: they scroll, the button stays.
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(new ScrollingArea(panel, this), 1);
        layout->addWidget(reset, 0, Qt::AlignRight);
    }

private:
    // Each row is coloured as its channel: the channel's colour as the row's ground, and black
    // or white text, whichever reads on it. Every channel colour stays legible so.
    void RenderModel() override {
        for (int row = 0; row < DailyMaximums::kRows; ++row) {
            for (auto [label, control] : {std::pair{m_captions[row], &m_model->Channel[row]},
                                          std::pair{m_values[row], &m_model->value[row]}}) {
                ShowText(label, control->text);
                ShowState(label, *control);
                ShowRowColour(label, control->foreColour);
            }
        }
    }

    static void ShowRowColour(QLabel* label, int colour) {
        QString style;
        if (colour != kDefaultColour) {
            const QColor ground = ToQColor(colour);
            style = QStringLiteral("background-color: %1; color: %2; padding: 1px 6px;")
                        .arg(ground.name(), TextOn(ground).name());
        }
        if (label->styleSheet() != style) {
            label->setStyleSheet(style);
        }
    }

    DailyMaximums* m_model;
    QLabel* m_captions[DailyMaximums::kRows];
    QLabel* m_values[DailyMaximums::kRows];
};

// ---- Log preview ---------------------------------------------------------------------------

class LogPreviewView : public MonitorView {
public:
    LogPreviewView(SharedState& state, TimerBackend& timers) : MonitorView(timers) {
        auto monitor = std::make_unique<LogPreview>(state);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* panel = new QFrame(this);
        panel->setObjectName(QStringLiteral("panel"));
        // A light ground: the marker flashes green and black.
        panel->setFrameShape(QFrame::StyledPanel);
        auto* grid = new QGridLayout(panel);
        grid->setHorizontalSpacing(24);
        grid->addWidget(new QLabel(QStringLiteral("this interval so far"), panel), 0, 1,
                        Qt::AlignRight);
        grid->addWidget(new QLabel(QStringLiteral("last interval"), panel), 0, 2, Qt::AlignRight);
        for (int i = 0; i < LogPreview::kGroups; ++i) {
            const std::string index = "(" + std::to_string(i) + ")";
            grid->addWidget(new QLabel(QString::fromLatin1(LogPreview::kGroupCaptions[i]), panel),
                            i + 1, 0);
            m_sums[i] = Figure(panel, ("accumulatedDATA" + index).c_str());
            grid->addWidget(m_sums[i], i + 1, 1);
            if (i < LogPreview::kGroups - 1) {
                m_averages[i] = Figure(panel, ("Label3" + index).c_str());
                grid->addWidget(m_averages[i], i + 1, 2);
            }
        }
        m_marker = new QLabel(panel);
        m_marker->setObjectName(QStringLiteral("Label1"));
        m_counter = Figure(panel, "dataOKOK");
        grid->addWidget(m_marker, LogPreview::kGroups + 1, 0);
        grid->addWidget(m_counter, LogPreview::kGroups + 1, 1);

        auto* exit =
            Button(this, this, m_model->EXITdataTOlog, [this] { Forward("EXITdataTOlog"); });
        exit->setObjectName(QStringLiteral("EXITdataTOlog"));
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(panel);
        layout->addWidget(exit, 0, Qt::AlignRight);
    }

private:
    void RenderModel() override {
        const LogPreview& m = *m_model;
        for (int i = 0; i < LogPreview::kGroups; ++i) {
            ShowLabel(m_sums[i], m.accumulatedDATA[i]);
            if (i < LogPreview::kGroups - 1) {
                ShowLabel(m_averages[i], m.Label3[i]);
            }
        }
        ShowLabel(m_marker, m.Label1);
        ShowLabel(m_counter, m.dataOKOK);
    }

    LogPreview* m_model;
    QLabel* m_sums[LogPreview::kGroups];
    QLabel* m_averages[LogPreview::kGroups - 1];
    QLabel* m_marker;
    QLabel* m_counter;
};

// ---- Raw data viewers ----------------------------------------------------------------------

QFont FixedFont() {
    return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

// A row's text without the line end that each row carries.
QString RowText(const std::string& row) {
    QString text = ToQt(row);
    if (text.endsWith(QStringLiteral("\r\n"))) {
        text.chop(2);
    }
    return text;
}

class RawCommsView : public MonitorView {
public:
    RawCommsView(SharedState& state, TimerBackend& timers) : MonitorView(timers) {
        auto monitor = std::make_unique<RawCommsViewer>(state);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* bar = new QMenuBar(this);
        MenuEntry(bar, "pause");
        MenuEntry(bar, "exit");
        m_list = new QTreeWidget(this);
        m_list->setObjectName(QStringLiteral("ListView1"));
        m_list->setRootIsDecorated(false);
        m_list->setFont(FixedFont());
        m_list->setColumnCount(2);
        m_list->setHeaderLabels({QString(), QStringLiteral("RAW DATA")});
        m_list->setColumnWidth(0, 24);
        m_list->setSelectionMode(QAbstractItemView::NoSelection);
        const int width =
            QFontMetrics(FixedFont()).horizontalAdvance(QString(52, QLatin1Char('M')));
        m_list->setMinimumWidth(width + 60);
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(bar);
        layout->addWidget(m_list);
        resize(width + 80, 420);
    }

private:
    void RenderModel() override {
        if (m_model->rows == m_shown) {
            return;
        }
        m_shown = m_model->rows;
        m_list->clear();
        for (const std::string& row : m_shown) {
            m_list->addTopLevelItem(new QTreeWidgetItem({QString(), RowText(row)}));
        }
    }

    RawCommsViewer* m_model;
    QTreeWidget* m_list;
    std::vector<std::string> m_shown;
};

class RawDataView : public MonitorView {
public:
    RawDataView(SharedState& state, TimerBackend& timers) : MonitorView(timers) {
        auto monitor = std::make_unique<RawDataViewer>(state);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* bar = new QMenuBar(this);
        MenuEntry(bar, "pauseMenu");
        MenuEntry(bar, "exitmenu");
        m_text = new QPlainTextEdit(this);
        m_text->setObjectName(QStringLiteral("Text1"));
        m_text->setReadOnly(true);
        m_text->setFont(FixedFont());
        m_text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
        m_text->setWordWrapMode(QTextOption::WrapAnywhere);
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(bar);
        layout->addWidget(m_text);
        resize(QFontMetrics(FixedFont()).horizontalAdvance(QString(60, QLatin1Char('M'))), 220);
    }

private:
    void RenderModel() override {
        if (m_model->Text1.text != m_shown) {
            m_shown = m_model->Text1.text;
            m_text->setPlainText(ToQt(m_shown));
        }
    }

    RawDataViewer* m_model;
    QPlainTextEdit* m_text;
    std::string m_shown;
};

// ---- Bar meters ------------------------------------------------------------------------------

// Two bars side by side on the canvas, each under its limit and over its caption and figure.
class BarMetersView : public MonitorView {
public:
    BarMetersView(SharedState& state, Dialogs& dialogs, TimerBackend& timers)
        : MonitorView(timers) {
        m_canvas = new PlotCanvas(this);
        m_canvas->setObjectName(QStringLiteral("bars"));
        m_canvas->setMinimumSize(200, 260);
        auto monitor = std::make_unique<BarMeters>(state, dialogs, *m_canvas);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* bar = new QMenuBar(this);
        MenuEntry(bar, "exitmenu");
        auto* grid = new QGridLayout;
        const char* names[4][2] = {
            {"maxP", "MaxR"}, {nullptr, nullptr}, {"Plabel", "Rlabel"}, {"Label2", "Label4"}};
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 2; ++column) {
                if (names[row][column] == nullptr) {
                    continue;
                }
                auto* label = new QLabel(this);
                label->setObjectName(QString::fromLatin1(names[row][column]));
                label->setAlignment(Qt::AlignCenter);
                if (row == 3) {
                    QFont big = label->font();
                    big.setPointSizeF(big.pointSizeF() * 1.8);
                    big.setBold(true);
                    label->setFont(big);
                }
                grid->addWidget(label, row, column);
                m_labels.emplace_back(m_model->controls.Find(names[row][column]), label);
            }
        }
        grid->addWidget(m_canvas, 1, 0, 1, 2);
        grid->setRowStretch(1, 1);
        new StaleShade(m_canvas);
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(bar);
        layout->addLayout(grid);
        resize(260, 420);
    }

private:
    void RenderModel() override {
        for (const auto& [control, label] : m_labels) {
            ShowLabel(label, *control);
        }
    }

    BarMeters* m_model;
    PlotCanvas* m_canvas;
    std::vector<std::pair<const Control*, QLabel*>> m_labels;
};

// ---- Live performance plot -------------------------------------------------------------------

// The dots stay on the canvas's own image until "CLEAR display"; an expose repaints the image.
class PerformancePlotView : public MonitorView {
public:
    PerformancePlotView(SharedState& state, int mode, TimerBackend& timers) : MonitorView(timers) {
        m_canvas = new PlotCanvas(this);
        m_canvas->setObjectName(QStringLiteral("GraphDisplay"));
        auto monitor = std::make_unique<PerformancePlot>(state, *m_canvas, mode);
        m_model = monitor.get();
        SetMonitor(std::move(monitor));

        auto* bar = new QMenuBar(this);
        MenuEntry(bar, "cleardisplayMENU");
        MenuEntry(bar, "exitplot");
        m_maxRPM = new QLabel(this);
        m_maxRPM->setObjectName(QStringLiteral("Label4"));
        m_maxPower = new QLabel(this);
        m_maxPower->setObjectName(QStringLiteral("Label3"));
        auto* limits = new QHBoxLayout;
        limits->addWidget(new QLabel(QStringLiteral("MAX RPM"), this));
        limits->addWidget(m_maxRPM);
        limits->addSpacing(24);
        limits->addWidget(new QLabel(QStringLiteral("MAX Power"), this));
        limits->addWidget(m_maxPower);
        limits->addStretch();
        auto* layout = new QVBoxLayout(this);
        layout->setMenuBar(bar);
        layout->addWidget(m_canvas, 1);
        layout->addLayout(limits);
        new StaleShade(m_canvas);
        resize(660, 460);
    }

private:
    void RenderModel() override {
        ShowLabel(m_maxRPM, m_model->Label4);
        ShowLabel(m_maxPower, m_model->Label3);
    }

    PerformancePlot* m_model;
    PlotCanvas* m_canvas;
    QLabel* m_maxRPM;
    QLabel* m_maxPower;
};

}  // namespace

MonitorView* MakeMonitorView(std::string_view name, SharedState& state, Dialogs& dialogs,
                             int plotMode, TimerBackend& timers) {
    if (name == "plotDiagnostics") {
        return new PerformancePlotView(state, plotMode, timers);
    }
    if (name == "BarGraphs") {
        return new BarMetersView(state, dialogs, timers);
    }
    if (name == "BATTMonitor") {
        return new BatteryView(state, BatteryMonitor::kFirst, timers);
    }
    if (name == "BATTMonitor2") {
        return new BatteryView(state, BatteryMonitor::kSecond, timers);
    }
    if (name == "dailyMaximums") {
        return new DailyMaximumsView(state, timers);
    }
    if (name == "dataTOlog") {
        return new LogPreviewView(state, timers);
    }
    if (name == "rawCOMMS") {
        return new RawCommsView(state, timers);
    }
    if (name == "displayRAWdata") {
        return new RawDataView(state, timers);
    }
    return nullptr;
}

}  // namespace brizalog
