#include "history/qt/graph_window_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileSystemWatcher>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <functional>
#include <vector>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/options.h"
#include "history/qt/chart_frame.h"
#include "history/qt/chart_picture.h"
#include "history/qt/scale_painter.h"
#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/plot_canvas.h"
#include "ui/qt_text.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

// The series panel stands on the chart's own dark grey, so that each box reads in the colour of
// its line.
constexpr const char* kSeriesPanelStyle =
    "#seriesPanel { background-color: #404040; border-radius: 4px; }"
    "#seriesPanel QLabel { color: #f0f0f0; }"
    "#seriesPanel QCheckBox { color: #f0f0f0; font-weight: bold; }";

QString Name(std::string_view name) {
    return ToQt(name);
}

// A series box of the panel: its square shows and hides the series, as every click on a box
// does; a click on its name picks the series for the value scale instead, and so does resting
// the mouse on it.
class SeriesBox : public QCheckBox {
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;

signals:
    void picked();

protected:
    bool hitButton(const QPoint& pos) const override {
        QStyleOptionButton option;
        initStyleOption(&option);
        return style()
            ->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this)
            .adjusted(-3, -3, 3, 3)
            .contains(pos);
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (!hitButton(event->position().toPoint())) {
            event->accept();
            emit picked();
            return;
        }
        QCheckBox::mousePressEvent(event);
    }
    void enterEvent(QEnterEvent* event) override {
        emit picked();
        QCheckBox::enterEvent(event);
    }
};

// The style of a series name: its line colour, a chip behind a colour the dark panel would
// swallow, underlined while its values stand on the scale.
QString SeriesStyle(const Control& box, bool picked) {
    QString style;
    if (box.foreColour != kDefaultColour) {
        style += QStringLiteral("color: %1;").arg(ToQColor(box.foreColour).name());
        const QColor chip = ChipBehind(box.foreColour, ToQColor(kPlotScreenColour));
        if (chip.isValid()) {
            style += QStringLiteral("background-color: %1; border-radius: 3px; padding: 0 3px;")
                         .arg(chip.name());
        }
    }
    if (picked) {
        style += QStringLiteral("text-decoration: underline;");
    }
    return style;
}

QString TwoDigits(int value) {
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

}  // namespace

GraphWindowView::GraphWindowView(const GraphMember& member, SharedState& state,
                                 std::filesystem::path folder, Clock& clock, Dialogs& dialogs,
                                 QWidget* parent)
    : QDialog(parent),
      m_folder(folder),
      m_state(state),
      m_dialogs(dialogs),
      m_canvas(new PlotCanvas(this)),
      m_engine(member, state, folder, clock, dialogs, *m_canvas),
      m_siblings(state, folder, clock, dialogs) {
    setObjectName(Name(member.name));
    setWindowFlag(Qt::WindowMaximizeButtonHint, true);
    setStyleSheet(QString::fromLatin1(kSeriesPanelStyle));
    m_engine.SetPrinter(this);
    m_engine.SetWindowLookup(
        [this](std::string_view other) -> GraphWindow& { return m_siblings.Window(other); });

    m_watcher = new QFileSystemWatcher(this);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        m_filesStale = true;
        RenderFiles();
    });

    // The chart takes what the window has; the list of days and the series panel keep to
    // narrow columns the user can narrow further, or fold the days away.
    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("chartSplitter"));
    m_splitter->setChildrenCollapsible(true);
    m_fileColumn = BuildSelection();
    m_splitter->addWidget(m_fileColumn);
    m_splitter->addWidget(BuildChart());
    m_splitter->addWidget(BuildSeriesPanel());
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setStretchFactor(2, 0);
    m_splitter->setCollapsible(1, false);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(BuildTopBar());
    layout->addWidget(m_splitter, 1);
    layout->addWidget(BuildActions());

    // A window made smaller than its contents scrolls rather than hiding any of them.
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("windowScroll"));
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);

    SetScalesShown(m_state.options.Flag("ChartScales"));
    QSize size(1280, 720);
    if (const QScreen* screen = this->screen()) {
        size = size.boundedTo(screen->availableGeometry().size() - QSize(16, 48));
    }
    resize(size);
    // Opens where the user left it, and never larger than the screen it opens on.
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
}

GraphWindowView::~GraphWindowView() = default;

// ---- Building the window from the member's controls -------------------------------------------

namespace {

struct Builder {
    GraphWindow& engine;
    QWidget* parent;
    std::vector<std::function<void()>>& renders;
    std::function<void(const std::string&)> forward;

    Control* Find(std::string_view name) const { return engine.Find(name); }

    template <typename W>
    W* Keep(std::string_view name, W* widget) {
        widget->setObjectName(Name(name));
        return widget;
    }

    QLabel* Label(std::string_view name) {
        Control* control = Find(name);
        if (control == nullptr) {
            return nullptr;
        }
        auto* label = Keep(name, new QLabel(parent));
        renders.push_back([label, control] { ShowLabel(label, *control); });
        return label;
    }

    // A readout label: a click shows the smallest or the largest value of its series.
    QLabel* Readout(std::string_view name) {
        Control* control = Find(name);
        if (control == nullptr) {
            return nullptr;
        }
        auto* label = Keep(name, new ClickableLabel(parent));
        label->setCursor(Qt::PointingHandCursor);
        label->setToolTip(QStringLiteral("Click for the lowest, again for the highest in view"));
        label->setMinimumWidth(
            label->fontMetrics().horizontalAdvance(QStringLiteral("MAX 0000 RPM")));
        const std::string key(name);
        QObject::connect(static_cast<ClickableLabel*>(label), &ClickableLabel::clicked, parent,
                         [fwd = forward, key] { fwd(key); });
        renders.push_back([label, control] { ShowLabel(label, *control); });
        return label;
    }

    QPushButton* Button(std::string_view name) {
        Control* control = Find(name);
        if (control == nullptr) {
            return nullptr;
        }
        auto* button = Keep(name, new QPushButton(parent));
        button->setAutoDefault(false);
        const std::string key(name);
        QObject::connect(button, &QPushButton::clicked, parent, [fwd = forward, key] { fwd(key); });
        renders.push_back([button, control] { ShowButton(button, *control); });
        return button;
    }

    template <typename Box>
    Box* Choice(std::string_view name) {
        Control* control = Find(name);
        if (control == nullptr) {
            return nullptr;
        }
        auto* box = Keep(name, new Box(parent));
        box->setCheckable(true);
        const std::string key(name);
        QObject::connect(box, &Box::clicked, parent, [fwd = forward, key] { fwd(key); });
        renders.push_back([box, control] {
            ShowButton(box, *control);
            ShowColours(box, *control);
        });
        return box;
    }

    QLineEdit* TextBox(std::string_view name, int maxLength) {
        Control* control = Find(name);
        if (control == nullptr) {
            return nullptr;
        }
        auto* box = Keep(name, new QLineEdit(parent));
        box->setMaxLength(maxLength);
        QObject::connect(box, &QLineEdit::textEdited, parent,
                         [control](const QString& text) { control->text = FromQt(text); });
        renders.push_back([box, control] { ShowTextBox(box, *control); });
        return box;
    }
};

}  // namespace

QWidget* GraphWindowView::BuildTopBar() {
    auto* bar = new QWidget(this);
    Builder b{m_engine, bar, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);

    m_foldButton = new QToolButton(bar);
    m_foldButton->setObjectName(QStringLiteral("FoldDays"));
    m_foldButton->setCheckable(true);
    m_foldButton->setAutoRaise(true);
    m_foldButton->setToolTip(
        QStringLiteral("Fold the list of days and the x-axis choices away, or bring them back"));
    connect(m_foldButton, &QToolButton::toggled, this, [this](bool folded) { FoldFiles(folded); });
    m_foldButton->setArrowType(Qt::LeftArrow);
    row->addWidget(m_foldButton);

    QLabel* heading = b.Label("Label15");
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.25);
    heading->setFont(bold);
    row->addWidget(heading);
    row->addSpacing(8);

    QLineEdit* fileName = b.TextBox("FileName", 260);
    fileName->setMinimumWidth(
        fileName->fontMetrics().horizontalAdvance(QStringLiteral("BZ_2026_11_22.txt")) + 12);
    row->addWidget(fileName);
    row->addSpacing(4);

    // Two digits each; Enter in any of them displays the range, as DISPLAY does.
    const auto time = [&](const char* hours, const char* minutes) {
        for (const char* name : {hours, minutes}) {
            QLineEdit* box = b.TextBox(name, 2);
            box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("000")) + 12);
            box->setAlignment(Qt::AlignCenter);
            row->addWidget(box);
            if (name == hours) {
                row->addWidget(new QLabel(QStringLiteral(":"), bar));
            }
        }
    };
    time("Time1h", "Time1m");
    row->addWidget(new QLabel(QStringLiteral("to"), bar));
    time("Time2h", "Time2m");

    QPushButton* display = b.Button("DisplayButton");
    display->setDefault(true);
    display->setAutoDefault(true);
    row->addWidget(display);
    auto* back = new QPushButton(QStringLiteral("Whole day"), bar);
    back->setObjectName(QStringLiteral("WholeDay"));
    back->setAutoDefault(false);
    back->setToolTip(
        QStringLiteral("Back to the view before the last zoom, then to the whole day "
                       "(Backspace on the chart)"));
    connect(back, &QPushButton::clicked, this, [this] { GoBack(); });
    row->addWidget(back);
    row->addSpacing(8);
    row->addStretch(1);
    return bar;
}

QWidget* GraphWindowView::BuildActions() {
    auto* bar = new QWidget(this);
    Builder b{m_engine, bar, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);

    row->addStretch(1);
    row->addWidget(b.Button("CSV"));
    auto* save = new QPushButton(QStringLiteral("Save chart image"), bar);
    save->setObjectName(QStringLiteral("SaveChartImage"));
    save->setAutoDefault(false);
    save->setToolTip(QStringLiteral(
        "Write the chart with its title, scales and legend as a PNG picture into the Excel "
        "folder"));
    connect(save, &QPushButton::clicked, this, [this] { SaveChartImage(); });
    row->addWidget(save);
    auto* pdf = new QPushButton(QStringLiteral("Save as PDF"), bar);
    pdf->setObjectName(QStringLiteral("SaveChartPdf"));
    pdf->setAutoDefault(false);
    pdf->setToolTip(QStringLiteral("Write the same page as a PDF into the Excel folder"));
    connect(pdf, &QPushButton::clicked, this, [this] { SaveChartPdf(); });
    row->addWidget(pdf);
    if (QPushButton* print = b.Button("PrintButton")) {
        row->addWidget(print);
    }
    row->addSpacing(8);
    row->addWidget(b.Button("ExitGraphsButton"));
    return bar;
}

QWidget* GraphWindowView::BuildSelection() {
    auto* column = new QWidget(this);
    Builder b{m_engine, column, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);

    m_dir = b.Keep("Dir1", new QComboBox(column));
    m_dir->setToolTip(QStringLiteral("Folder of the program folder whose logs are listed"));
    connect(m_dir, &QComboBox::activated, this,
            [this](int index) { Forward("Dir1", FromQt(m_dir->itemText(index))); });
    layout->addWidget(m_dir);

    m_files = b.Keep("File1", new QListWidget(column));
    m_files->setMinimumWidth(60);
    // A click on a day, or the arrow keys walking the list, display that day. A click on the
    // day already marked displays it again, as a click on the list always does.
    connect(m_files, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) {
            Forward("File1", FromQt(m_files->item(row)->text()));
        }
    });
    m_files->viewport()->installEventFilter(this);
    m_files->installEventFilter(this);
    connect(m_files, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (m_files->row(item) == m_rowBeforePress) {
            Forward("File1", FromQt(item->text()));
        }
    });
    layout->addWidget(m_files, 1);
    if (QCheckBox* collate = b.Choice<QCheckBox>("Collate")) {
        collate->setToolTip(
            QStringLiteral("Add a line for the log on display to the day list "
                           "when another file is clicked"));
        layout->addWidget(collate);
    }
    if (Control* frame = m_engine.Find("Frame1")) {
        auto* group = b.Keep("Frame1", new QGroupBox(column));
        m_renders.push_back([group, frame] { ShowGroup(group, *frame); });
        auto* options = new QVBoxLayout(group);
        options->setContentsMargins(8, 2, 8, 2);
        Builder inGroup{m_engine, group, m_renders,
                        [this](const std::string& name) { Forward(name); }};
        for (const char* name : {"XAxisTime", "XAxisRPM", "XAxisWind", "Distribution"}) {
            QRadioButton* option = inGroup.Choice<QRadioButton>(name);
            option->setAutoExclusive(false);  // the engine decides which one is chosen
            options->addWidget(option);
        }
        layout->addWidget(group);
    }
    const int wide = m_files->fontMetrics().horizontalAdvance(QStringLiteral("BZ_2026_11_22.txt")) +
                     m_files->style()->pixelMetric(QStyle::PM_ScrollBarExtent) / 2 + 8;
    m_fileColumnWidth = std::max(wide, column->minimumSizeHint().width());
    return column;
}

QWidget* GraphWindowView::BuildChart() {
    auto* column = new QWidget(this);
    Builder b{m_engine, column, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);

    QLabel* title = b.Label("Label7");
    title->setAlignment(Qt::AlignCenter);
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    title->setFont(bold);
    layout->addWidget(title);

    m_canvas->setObjectName(QStringLiteral("Plot"));
    m_canvas->setCursor(Qt::CrossCursor);
    // A click on the chart gives it the keys: arrows pan, + and − zoom, Backspace goes back.
    m_canvas->setFocusPolicy(Qt::WheelFocus);
    m_canvas->installEventFilter(this);
    connect(m_canvas, &PlotCanvas::mousePressed, this,
            [this](double x, double y) { RunHandler([&] { m_engine.Plot_MouseDown(x, y); }); });
    connect(m_canvas, &PlotCanvas::mouseMoved, this, [this](double x, double y) {
        RunHandler([&] { m_engine.Plot_MouseMove(x, y); });
        ShowReadoutTip();
    });
    connect(m_canvas, &PlotCanvas::mouseReleased, this,
            [this](double x, double y) { RunHandler([&] { m_engine.Plot_MouseUp(x, y); }); });
    m_frame = new ChartFrame(m_canvas, column);
    m_frame->setObjectName(QStringLiteral("chartFrame"));
    layout->addWidget(m_frame, 1);

    auto* times = new QHBoxLayout;
    times->addWidget(b.Label("stime"));
    times->addStretch(1);
    QLabel* under = b.Label("vt");
    under->setFont(bold);
    under->setToolTip(QStringLiteral("Time under the mouse"));
    times->addWidget(under);
    times->addStretch(1);
    times->addWidget(b.Label("ftime"));
    layout->addLayout(times);
    return column;
}

QWidget* GraphWindowView::BuildSeriesPanel() {
    auto* panel = new QWidget;
    panel->setObjectName(QStringLiteral("seriesPanel"));
    panel->setAttribute(Qt::WA_StyledBackground);
    Builder b{m_engine, panel, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(6, 6, 6, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(1);
    // Each series in two lines: its box with the channel's name, then its reading under the
    // mouse and its energy in view.
    int row = 0;
    grid->addWidget(b.Choice<QCheckBox>("CheckScaling"), row++, 0, 1, 2);
    m_scalesBox = new QCheckBox(QStringLiteral("Scales"), panel);
    m_scalesBox->setObjectName(QStringLiteral("Scales"));
    m_scalesBox->setToolTip(
        QStringLiteral("Time and value scales, a grid and a crosshair around the chart"));
    connect(m_scalesBox, &QCheckBox::clicked, this, [this](bool on) {
        SetScalesShown(on);
        m_state.options.SetFlag("ChartScales", on);
        try {
            WriteOptions(m_state.options, m_folder);
        } catch (const Failure& failure) {
            TellNotice("options", std::string("Options not saved: ") + failure.what());
        }
    });
    grid->addWidget(m_scalesBox, row++, 0, 1, 2);
    grid->setRowMinimumHeight(row++, 8);
    int index = 0;
    for (const SeriesRow& series : m_engine.member().series) {
        Control* control = m_engine.Find(series.box);
        auto* box = b.Keep(series.box, new SeriesBox(panel));
        const std::string key(series.box);
        connect(box, &QCheckBox::clicked, this, [this, key] { Forward(key); });
        connect(box, &SeriesBox::picked, this, [this, index] { PickSeries(index); });
        m_renders.push_back([this, box, control, index] {
            ShowButton(box, *control);
            const QString style = SeriesStyle(*control, index == ScaleSeries());
            if (box->styleSheet() != style) {
                box->setStyleSheet(style);
            }
        });
        grid->addWidget(box, row, 0, 1, 2, Qt::AlignLeft);
        ++row;
        if (QLabel* readout = b.Readout(series.readout)) {
            readout->setMinimumWidth(
                readout->fontMetrics().horizontalAdvance(QStringLiteral("MAX 0000 RPM")));
            readout->setContentsMargins(6, 0, 0, 0);
            grid->addWidget(readout, row, 0);
        }
        if (!series.energyLabel.empty()) {
            QLabel* energy = b.Label(series.energyLabel);
            energy->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            energy->setToolTip(QStringLiteral("Energy of the view"));
            // Room for a day's total before there is one: the panel keeps its width.
            energy->setMinimumWidth(
                energy->fontMetrics().horizontalAdvance(QStringLiteral("00000 Wh")));
            grid->addWidget(energy, row, 1);
        }
        ++row;
        grid->setRowMinimumHeight(row, 4);
        ++row;
        ++index;
    }
    grid->setRowStretch(row, 1);

    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("seriesScroll"));
    scroll->setWidget(panel);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setMinimumWidth(40);
    scroll->setStyleSheet(QStringLiteral("QScrollArea { background-color: #404040; }"));
    return scroll;
}

// ---- Events -----------------------------------------------------------------------------------

void GraphWindowView::Forward(const std::string& control, const std::string& item) {
    // A click may write a file that the list shows (a collation file, a log made by a display).
    m_filesStale = true;
    RunHandler([&] { m_engine.Click(control, item); });
}

void GraphWindowView::Load() {
    RunHandler([this] { m_engine.Form_Load(); });
    m_engine.visible = true;
    m_files->setFocus();
}

bool GraphWindowView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_files->viewport() && event->type() == QEvent::MouseButtonPress) {
        m_rowBeforePress = m_files->currentRow();
    }
    // Backspace goes back from the list of days too, where it has no use of its own.
    if (watched == m_files && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Backspace) {
        GoBack();
        return true;
    }
    if (watched == m_canvas) {
        switch (event->type()) {
            case QEvent::MouseMove:
                // Before the chart's own handler: the readouts it writes go beside the line.
                m_crosshairAt = static_cast<QMouseEvent*>(event)->position();
                break;
            case QEvent::Leave:
                m_crosshairAt.reset();
                m_frame->SetCrosshair(std::nullopt, false, {});
                break;
            case QEvent::Wheel: {
                auto* wheel = static_cast<QWheelEvent*>(event);
                m_wheelEighths += wheel->angleDelta().y();
                const int notches = m_wheelEighths / 120;
                if (notches != 0) {
                    m_wheelEighths -= notches * 120;
                    const double x = wheel->position().x() / std::max(1, m_canvas->width()) *
                                     m_canvas->ScaleWidth();
                    ZoomSteps(notches, MinuteAt(m_engine, x));
                }
                return true;
            }
            case QEvent::KeyPress:
                if (HandleChartKey(static_cast<QKeyEvent*>(event)->key())) {
                    return true;
                }
                break;
            default:
                break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

bool GraphWindowView::HandleChartKey(int key) {
    const std::optional<MinuteRange> range = RangeOfRecords(m_engine);
    const double middle = range ? (range->start + range->finish) / 2.0 : 720;
    switch (key) {
        case Qt::Key_Left:
            Pan(-0.1);
            return true;
        case Qt::Key_Right:
            Pan(0.1);
            return true;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            ZoomSteps(1, middle);
            return true;
        case Qt::Key_Minus:
        case Qt::Key_Underscore:
            ZoomSteps(-1, middle);
            return true;
        case Qt::Key_Backspace:
            GoBack();
            return true;
        default:
            return false;
    }
}

void GraphWindowView::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_sized) {
        return;
    }
    // The columns beside the chart take what their contents ask, once their fonts are known;
    // the chart has the rest.
    m_sized = true;
    auto* seriesScroll = static_cast<QScrollArea*>(m_splitter->widget(2));
    const QSize panel = seriesScroll->widget()->sizeHint();
    const int series =
        panel.width() + 2 +
        (panel.height() > seriesScroll->height() ? style()->pixelMetric(QStyle::PM_ScrollBarExtent)
                                                 : 0);
    const int room = m_splitter->width() - 2 * m_splitter->handleWidth();
    m_splitter->setSizes(
        {m_fileColumnWidth, std::max(0, room - m_fileColumnWidth - series), series});
}

void GraphWindowView::reject() {
    if (!m_engine.unloadedByExit) {
        RunHandler([this] { m_engine.ExitGraphsButton_Click(); });
    }
    QDialog::reject();
}

void GraphWindowView::ShowReadoutTip() {
    // With the scales on, the time stands at the top of the crosshair instead.
    const Control* vt = m_engine.Find("vt");
    const QString text =
        !m_frame->scalesShown() && vt != nullptr && vt->visible ? ToQt(vt->text) : QString();
    if (m_canvas->toolTip() != text) {
        m_canvas->setToolTip(text);
        if (QToolTip::isVisible()) {
            QToolTip::showText(QCursor::pos(), text, m_canvas);
        }
    }
}

// ---- Scales, crosshair and zoom ---------------------------------------------------------------

int GraphWindowView::ScaleSeries() const {
    const GraphMember& member = m_engine.member();
    const int count = static_cast<int>(member.series.size());
    if (m_picked >= 0 && m_picked < count && m_engine.ShowFlag(m_picked) == 1) {
        return m_picked;
    }
    // Unpicked, the first channel shown: a meter's temperatures, of no channel, come first in
    // its panel but are not what its chart is read for.
    int anyShown = kNoSeries;
    for (int s = 0; s < count; ++s) {
        if (m_engine.ShowFlag(s) != 1) {
            continue;
        }
        if (member.series[static_cast<std::size_t>(s)].channel != 0) {
            return s;
        }
        if (anyShown == kNoSeries) {
            anyShown = s;
        }
    }
    return anyShown;
}

void GraphWindowView::PickSeries(int series) {
    if (m_picked == series) {
        return;
    }
    m_picked = series;
    Render();
}

void GraphWindowView::SetScalesShown(bool shown) {
    if (m_scalesBox->isChecked() != shown) {
        m_scalesBox->setChecked(shown);
    }
    m_frame->SetScalesShown(shown);
    ShowReadoutTip();
}

void GraphWindowView::FoldFiles(bool folded) {
    // The column of days and x-axis choices folds away and gives its room to the chart.
    m_foldButton->setArrowType(folded ? Qt::RightArrow : Qt::LeftArrow);
    QList<int> sizes = m_splitter->sizes();
    const int room = sizes[0] + sizes[1];
    sizes[0] = folded ? 0 : m_fileColumnWidth;
    sizes[1] = std::max(0, room - sizes[0]);
    m_splitter->setSizes(sizes);
}

void GraphWindowView::RenderScales() {
    const std::tuple<std::uint64_t, int, int> key{m_canvas->clears(), ScaleSeries(),
                                                  m_engine.ScaleFlag};
    if (key != m_scalesKey) {
        m_scalesKey = key;
        m_frame->SetScales(ScalesOf(m_engine, ScaleSeries(), m_canvas->ScaleWidth(),
                                    m_canvas->ScaleHeight(), m_state.settings.WSUnits));
    }
    if (m_crosshairAt && m_frame->scalesShown()) {
        ShowCrosshair(*m_crosshairAt);
    }
}

void GraphWindowView::ShowCrosshair(QPointF pixel) {
    const ChartScales& scales = m_frame->scales();
    if (scales.kind == ChartKind::None) {
        m_frame->SetCrosshair(std::nullopt, false, {});
        return;
    }
    if (scales.kind == ChartKind::Time) {
        m_frame->SetCrosshair(pixel, false, ToQt(m_engine.Find("vt")->text));
        return;
    }
    // The curves and the bands: both quantities under the mouse, read off the straight scales.
    const double across = pixel.x() / std::max(1, m_canvas->width());
    const double down = pixel.y() / std::max(1, m_canvas->height());
    const auto text = [](const ChartScale& scale, double at) {
        const double value = scale.ValueAt(at);
        const std::string& title = scale.title;
        const auto open = title.rfind('(');
        const std::string unit =
            open == std::string::npos ? title : title.substr(open + 1, title.size() - open - 2);
        return QString::number(value, 'f', std::abs(value) < 100 ? 1 : 0) + QLatin1Char(' ') +
               ToQt(unit);
    };
    m_frame->SetCrosshair(
        pixel, true,
        text(scales.vertical, down) + QStringLiteral(" at ") + text(scales.horizontal, across));
}

void GraphWindowView::TrackZooms() {
    const int count = std::min(m_engine.RecordCount, kRecordLimit);
    std::tuple<std::string, int, double, double> shown{m_engine.Find("FileName")->text, count,
                                                       count > 0 ? m_engine.LogTime[1] : 0,
                                                       count > 0 ? m_engine.LogTime[count] : 0};
    if (shown == m_shown) {
        return;
    }
    // Another read: of another log, the zooms start afresh; of the same log, the view it
    // replaces is where "Whole day" goes back to.
    if (std::get<0>(shown) != std::get<0>(m_shown)) {
        m_history.Clear();
    } else if (!m_goingBack && m_shownRange) {
        m_history.Push(*m_shownRange);
    }
    m_shown = std::move(shown);
    m_shownRange = RangeOfRecords(m_engine);
}

void GraphWindowView::ShowRange(MinuteRange range, bool back) {
    m_goingBack = back;
    RunHandler([&] {
        m_engine.SetText("Time1h", FromQt(TwoDigits(range.start / 60)));
        m_engine.SetText("Time1m", FromQt(TwoDigits(range.start % 60)));
        m_engine.SetText("Time2h", FromQt(TwoDigits(range.finish / 60)));
        m_engine.SetText("Time2m", FromQt(TwoDigits(range.finish % 60)));
        m_engine.DisplayButton_Click();
    });
    m_goingBack = false;
}

void GraphWindowView::ZoomSteps(int steps, double anchor) {
    if (ShownChart(m_engine) != ChartKind::Time || steps == 0) {
        return;  // the curves and the bands have no time to zoom in
    }
    const std::optional<MinuteRange> range = RangeOfRecords(m_engine);
    if (!range) {
        return;
    }
    const std::optional<MinuteRange> zoomed =
        Zoomed(*range, anchor, std::pow(0.5, static_cast<double>(steps)));
    // A view that would hold less than a chart's two records is not read at all.
    if (zoomed && (steps < 0 || RecordsInside(m_engine, *zoomed) >= 2)) {
        ShowRange(*zoomed, false);
    }
}

void GraphWindowView::Pan(double fraction) {
    if (ShownChart(m_engine) != ChartKind::Time) {
        return;
    }
    const std::optional<MinuteRange> range = RangeOfRecords(m_engine);
    if (!range) {
        return;
    }
    const std::optional<MinuteRange> panned = Panned(*range, fraction);
    if (panned && RecordsInside(m_engine, *panned) >= 2) {
        ShowRange(*panned, false);
    }
}

void GraphWindowView::GoBack() {
    if (const std::optional<MinuteRange> before = m_history.Back()) {
        ShowRange(*before, true);
    } else if (m_shownRange != kWholeDay && m_engine.RecordCount > 0) {
        ShowRange(kWholeDay, true);
    }
}

// ---- Rendering --------------------------------------------------------------------------------

void GraphWindowView::Render() {
    const QString title = ToQt(m_engine.caption);
    if (windowTitle() != title) {
        setWindowTitle(title);
    }
    TrackZooms();
    for (const auto& render : m_renders) {
        render();
    }
    RenderFiles();
    RenderScales();
    if (m_engine.unloadedByExit && isVisible()) {
        accept();
    }
}

void GraphWindowView::RenderFiles() {
    // The folders of the program folder, one level down; listed again only after a click.
    if (m_filesStale) {
        std::vector<std::string> folders;
        const QDir program(QString::fromStdString(m_folder.string()));
        for (const QString& sub :
             program.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            folders.push_back("/" + FromQt(sub));
        }
        ShowList(m_dir, *m_engine.Find("Dir1"), folders);
    }

    const QString folder = QString::fromStdString(
        InFolder(m_folder, m_engine.file1Folder.empty() ? "/" : m_engine.file1Folder).string());
    if (folder != m_listedFolder) {
        if (!m_listedFolder.isEmpty()) {
            m_watcher->removePath(m_listedFolder);
        }
        m_listedFolder = folder;
        if (!m_engine.file1Folder.empty()) {
            m_watcher->addPath(folder);
        }
        m_filesStale = true;
    }
    if (m_filesStale) {
        m_filesStale = false;
        QStringList wanted;
        for (const std::string& name : m_engine.File1Items()) {
            wanted << ToQt(name);
        }
        QStringList shown;
        for (int i = 0; i < m_files->count(); ++i) {
            shown << m_files->item(i)->text();
        }
        if (shown != wanted) {
            const QSignalBlocker block(m_files);
            m_files->clear();
            m_files->addItems(wanted);
        }
    }
    // The day on display is the one marked in the list.
    const QString current = ToQt(m_engine.Find("FileName")->text);
    const QListWidgetItem* marked = m_files->currentItem();
    if (marked == nullptr || marked->text() != current) {
        const QList<QListWidgetItem*> found = m_files->findItems(current, Qt::MatchExactly);
        const QSignalBlocker block(m_files);
        if (found.isEmpty()) {
            m_files->setCurrentRow(-1);
        } else {
            m_files->setCurrentItem(found.first());
            m_files->scrollToItem(found.first());
        }
    }
}

// ---- Image and print --------------------------------------------------------------------------

std::filesystem::path GraphWindowView::ChartImagePath() const {
    return InFolder(m_folder, "/Excel/" + m_engine.CsvName() + ".png");
}

std::filesystem::path GraphWindowView::ChartPdfPath() const {
    return InFolder(m_folder, "/Excel/" + m_engine.CsvName() + ".pdf");
}

QImage GraphWindowView::ChartPage() {
    brizalog::ChartPage page;
    const std::string file = m_engine.Find("FileName")->text;
    QStringList title;
    for (const std::string& part :
         {m_engine.caption, std::string(m_engine.member().name), file, LogDateText(file)}) {
        if (!part.empty()) {
            title << ToQt(part);
        }
    }
    page.title = title.join(QStringLiteral("  ·  "));
    page.subtitle = ToQt(m_engine.Find("Label7")->text);
    const std::string& from = m_engine.Find("stime")->text;
    const std::string& to = m_engine.Find("ftime")->text;
    if (m_engine.RecordCount > 1) {
        page.subtitle += QStringLiteral(", %1 to %2").arg(ToQt(from), ToQt(to));
    }
    page.chart = m_canvas->image();
    // The picture always carries its scales, whether the window shows them or not.
    page.scales = ScalesOf(m_engine, ScaleSeries(), m_canvas->ScaleWidth(), m_canvas->ScaleHeight(),
                           m_state.settings.WSUnits);
    page.font = font();
    const GraphMember& member = m_engine.member();
    switch (page.scales.kind) {
        case ChartKind::Time:
            for (std::size_t s = 0; s < member.series.size(); ++s) {
                const int series = static_cast<int>(s);
                if (m_engine.ShowFlag(series) == 1) {
                    page.legend.push_back({ToQt(m_engine.Find(member.series[s].box)->text),
                                           m_engine.SeriesColour(series)});
                }
            }
            break;
        case ChartKind::PowerVsRpm:
        case ChartKind::PowerVsWind:
            page.legend.push_back({QStringLiteral("Records"), kRed});
            page.legend.push_back({QStringLiteral("Cube-law curve"), kGreen});
            break;
        case ChartKind::Distribution:
            page.legend.push_back({QStringLiteral("Records in each 10 W band"), kRed});
            break;
        case ChartKind::None:
            break;
    }
    return ChartPicture(page);
}

bool GraphWindowView::SaveChartImage() {
    bool saved = false;
    RunHandler([&] {
        std::filesystem::path path;
        try {
            path = ChartImagePath();
        } catch (const Failure&) {
            m_dialogs.ShowMessage("No chart to save: choose a log first");
            return;
        }
        saved = ChartPage().save(QString::fromStdString(path.string()), "PNG");
        m_dialogs.ShowMessage(saved ? "Chart image saved as " + path.filename().string()
                                    : "The chart image could not be saved in " +
                                          path.parent_path().string());
    });
    return saved;
}

bool GraphWindowView::SaveChartPdf() {
    bool saved = false;
    RunHandler([&] {
        std::filesystem::path path;
        try {
            path = ChartPdfPath();
        } catch (const Failure&) {
            m_dialogs.ShowMessage("No chart to save: choose a log first");
            return;
        }
        const QImage picture = ChartPage();
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString::fromStdString(path.string()));
        printer.setPageOrientation(QPageLayout::Landscape);
        printer.setDocName(QString::fromStdString(path.filename().string()));
        QPainter painter;
        if (painter.begin(&printer)) {
            const QRect page = painter.viewport();
            const QSize size = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
            painter.setViewport(page.x(), page.y(), size.width(), size.height());
            painter.setWindow(picture.rect());
            painter.drawImage(QRect(QPoint(0, 0), picture.size()), picture);
            saved = painter.end() && std::filesystem::exists(path);
        }
        m_dialogs.ShowMessage(saved ? "Chart saved as PDF in " + path.string()
                                    : "The PDF could not be written in " +
                                          path.parent_path().string());
    });
    return saved;
}

void GraphWindowView::PrintForm(std::string_view /*window*/) {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) {
        throw Failure(FailureKind::FileAccess, "no default printer");
    }
    // The window's client area as it shows now, with the chart on white, scaled to the page.
    const QImage image = grab().toImage();
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPainter painter;
    if (!painter.begin(&printer)) {
        throw Failure(FailureKind::FileAccess, "the printer cannot be opened");
    }
    const QRect page = painter.viewport();
    const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
    painter.setViewport(page.x(), page.y(), size.width(), size.height());
    painter.setWindow(image.rect());
    painter.drawImage(0, 0, image);
    if (!painter.end()) {
        throw Failure(FailureKind::FileAccess, "the page could not be printed");
    }
}

}  // namespace brizalog

#include "graph_window_view.moc"
