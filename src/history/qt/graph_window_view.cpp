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
#include <QToolTip>
#include <QVBoxLayout>
#include <functional>
#include <vector>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/plot_canvas.h"
#include "ui/qt_text.h"

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

}  // namespace

GraphWindowView::GraphWindowView(const GraphMember& member, SharedState& state,
                                 std::filesystem::path folder, Clock& clock, Dialogs& dialogs,
                                 QWidget* parent)
    : QDialog(parent),
      m_folder(folder),
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

    auto* body = new QHBoxLayout;
    body->addWidget(BuildSelection());
    body->addWidget(BuildChart(), 1);
    body->addWidget(BuildSeriesPanel());

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(BuildTopBar());
    layout->addLayout(body, 1);

    resize(1180, 660);
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

    QLabel* heading = b.Label("Label15");
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.25);
    heading->setFont(bold);
    row->addWidget(heading);
    row->addSpacing(12);

    QLineEdit* fileName = b.TextBox("FileName", 260);
    fileName->setMinimumWidth(
        fileName->fontMetrics().horizontalAdvance(QStringLiteral("BZ_2026_11_22_00.txt")) + 16);
    row->addWidget(fileName);
    row->addSpacing(8);

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
    row->addSpacing(8);
    row->addWidget(b.Choice<QCheckBox>("CheckScaling"));
    if (QCheckBox* collate = b.Choice<QCheckBox>("Collate")) {
        collate->setToolTip(
            QStringLiteral("Add a line for the log on display to the day list "
                           "when another file is clicked"));
        row->addWidget(collate);
    }
    row->addStretch(1);

    row->addWidget(b.Button("CSV"));
    auto* save = new QPushButton(QStringLiteral("Save chart image"), bar);
    save->setObjectName(QStringLiteral("SaveChartImage"));
    save->setAutoDefault(false);
    save->setToolTip(QStringLiteral("Write the chart as a PNG picture into the Excel folder"));
    connect(save, &QPushButton::clicked, this, [this] { SaveChartImage(); });
    row->addWidget(save);
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
    m_files->setMinimumWidth(
        m_files->fontMetrics().horizontalAdvance(QStringLiteral("BZ_2026_11_22_00.txt")) + 40);
    // A click on a day, or the arrow keys walking the list, display that day. A click on the
    // day already marked displays it again, as a click on the list always does.
    connect(m_files, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) {
            Forward("File1", FromQt(m_files->item(row)->text()));
        }
    });
    m_files->viewport()->installEventFilter(this);
    connect(m_files, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (m_files->row(item) == m_rowBeforePress) {
            Forward("File1", FromQt(item->text()));
        }
    });
    layout->addWidget(m_files, 1);

    if (Control* frame = m_engine.Find("Frame1")) {
        auto* group = b.Keep("Frame1", new QGroupBox(column));
        m_renders.push_back([group, frame] { ShowGroup(group, *frame); });
        auto* options = new QVBoxLayout(group);
        Builder inGroup{m_engine, group, m_renders,
                        [this](const std::string& name) { Forward(name); }};
        for (const char* name : {"XAxisTime", "XAxisRPM", "XAxisWind", "Distribution"}) {
            QRadioButton* option = inGroup.Choice<QRadioButton>(name);
            option->setAutoExclusive(false);  // the engine decides which one is chosen
            options->addWidget(option);
        }
        layout->addWidget(group);
    }
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
    connect(m_canvas, &PlotCanvas::mousePressed, this,
            [this](double x, double y) { RunHandler([&] { m_engine.Plot_MouseDown(x, y); }); });
    connect(m_canvas, &PlotCanvas::mouseMoved, this, [this](double x, double y) {
        RunHandler([&] { m_engine.Plot_MouseMove(x, y); });
        ShowReadoutTip(x, y);
    });
    connect(m_canvas, &PlotCanvas::mouseReleased, this,
            [this](double x, double y) { RunHandler([&] { m_engine.Plot_MouseUp(x, y); }); });
    layout->addWidget(m_canvas, 1);

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
    auto* panel = new QWidget(this);
    panel->setObjectName(QStringLiteral("seriesPanel"));
    panel->setAttribute(Qt::WA_StyledBackground);
    Builder b{m_engine, panel, m_renders, [this](const std::string& name) { Forward(name); }};
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(10, 10, 10, 10);
    grid->setHorizontalSpacing(12);
    int row = 0;
    for (const SeriesRow& series : m_engine.member().series) {
        grid->addWidget(b.Choice<QCheckBox>(series.box), row, 0);
        if (QLabel* readout = b.Readout(series.readout)) {
            readout->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grid->addWidget(readout, row, 1);
        }
        if (!series.energyLabel.empty()) {
            QLabel* energy = b.Label(series.energyLabel);
            energy->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            energy->setToolTip(QStringLiteral("Energy of the view"));
            grid->addWidget(energy, row, 2);
        }
        ++row;
    }
    grid->setRowStretch(row, 1);
    return panel;
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
    return QDialog::eventFilter(watched, event);
}

void GraphWindowView::reject() {
    if (!m_engine.unloadedByExit) {
        RunHandler([this] { m_engine.ExitGraphsButton_Click(); });
    }
    QDialog::reject();
}

void GraphWindowView::ShowReadoutTip(double /*x*/, double /*y*/) {
    const Control* vt = m_engine.Find("vt");
    const QString text = vt != nullptr && vt->visible ? ToQt(vt->text) : QString();
    if (m_canvas->toolTip() != text) {
        m_canvas->setToolTip(text);
        if (QToolTip::isVisible()) {
            QToolTip::showText(QCursor::pos(), text, m_canvas);
        }
    }
}

// ---- Rendering --------------------------------------------------------------------------------

void GraphWindowView::Render() {
    const QString title = ToQt(m_engine.caption);
    if (windowTitle() != title) {
        setWindowTitle(title);
    }
    for (const auto& render : m_renders) {
        render();
    }
    RenderFiles();
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
        saved = m_canvas->image().save(QString::fromStdString(path.string()), "PNG");
        m_dialogs.ShowMessage(saved ? "Chart image saved as " + path.filename().string()
                                    : "The chart image could not be saved in " +
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
