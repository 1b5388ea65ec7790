#include "acquisition/qt/main_window.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QScrollArea>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <set>

#include "acquisition/brizalog.h"
#include "acquisition/qt/platform.h"
#include "logging/log_records.h"
#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/keyboard.h"
#include "ui/stale_shade.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

// A one-line text that may be far longer than the window (a whole frame of the board): it shows
// what fits, ends in an ellipsis, and keeps the whole text in its tooltip.
class ElidedLabel : public QLabel {
public:
    using QLabel::QLabel;
    // One line, whatever the text: the height comes from the font and the style's padding,
    // never from laying out a frame's text that changes many times a second.
    QSize minimumSizeHint() const override { return {40, LineHeight()}; }
    QSize sizeHint() const override { return {200, LineHeight()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
        painter.setPen(palette().color(foregroundRole()));
        painter.drawText(area, static_cast<int>(alignment()), shown);
    }

private:
    int LineHeight() const {
        const QMargins around = contentsMargins();
        return fontMetrics().height() + around.top() + around.bottom() + 2 * margin();
    }
};

// Captions of the cells of the Frame1 groups and of Frame2; the values carry their units.
struct CellPlace {
    const char* name;
    const char* caption;
};

constexpr CellPlace kWindmill1[] = {{"Volts(0)", "Battery"}, {"Amps(0)", "Current"},
                                    {"Watts(0)", "Power"},   {"Whours(0)", "Energy today"},
                                    {"Wind(0)", "Wind"},     {"RPM(0)", "Rotor"}};
constexpr CellPlace kWindmill2[] = {{"Amps(1)", "Current"},
                                    {"Watts(1)", "Power"},
                                    {"Whours(1)", "Energy today"},
                                    {"RPM(1)", "Rotor"}};
constexpr CellPlace kAuxDc[] = {{"Amps(2)", "Current 3"},        {"Watts(2)", "Power 3"},
                                {"Whours(2)", "Energy 3 today"}, {"Amps(3)", "Current 4"},
                                {"Watts(3)", "Power 4"},         {"Whours(3)", "Energy 4 today"}};
constexpr CellPlace kMisc[] = {{"Label6", "Volts 2"},
                               {"Label7", "Volts 3"},
                               {"Label9", "Pulse 4"},
                               {"Label12", "Pulse 5"},
                               {"Label8", "Pulse 3"}};

constexpr int kTwipsPerPixel = 15;  // 1440 twips to the inch, 96 pixels to the inch

// The panel's look, from the palette: light or dark, every text reads on its ground at
// 4.5 : 1 or better. The cells' own colours, where a rule gives them, are set on each cell.
QString PanelStyle(const QPalette& p) {
    const QColor window = p.color(QPalette::Window);
    const QColor windowText = p.color(QPalette::WindowText);
    const QColor base = p.color(QPalette::Base);
    const QColor text = p.color(QPalette::Text);
    const QColor channelGround = Mix(window, base, 0.5);
    const QColor muted = ReadableOn(Mix(windowText, window, 0.35), window);
    const QColor title =
        ReadableOn(Mix(windowText, p.color(QPalette::Highlight), 0.3), channelGround);
    return QStringLiteral(R"(
QLabel[cell="true"] {
    border: 1px solid %1; border-radius: 4px; background: %2;
    padding: 3px 8px; font-size: 13pt; font-weight: 600; color: %3;
}
QLabel[caption="true"] { color: %4; font-size: 8pt; }
QGroupBox { font-weight: 600; border: 1px solid %5; border-radius: 6px;
            margin-top: 10px; padding-top: 4px; }
QGroupBox::title { subcontrol-origin: margin; left: 8px; padding: 0 4px; color: %6; }
QGroupBox[channel="true"] { font-weight: 500; margin-top: 8px; background: %7; }
#Label11 { font-size: 15pt; font-weight: 700; color: %8; }
#Label15, #Label1 { color: %4; }
#Label2 { font-family: monospace; color: %3; background: %9;
          border: 1px solid %5; padding: 2px 4px; }
#ErrorString { color: %4; }
)")
        .arg(Mix(text, base, 0.6).name(), base.name(), text.name(), muted.name(),
             Mix(windowText, window, 0.75).name(), title.name(), channelGround.name(),
             windowText.name(), p.color(QPalette::AlternateBase).name());
}

}  // namespace

MainWindow::MainWindow(Brizalog& form, QWidget* parent)
    : QMainWindow(parent), m_form(form), m_status({0, form.clock().Now()}) {
    m_monotonic.start();
    setObjectName(QStringLiteral("Brizalog"));
    BuildMenus();
    BuildPanel();
    BuildStatusBar();
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
    Render();
    KeepMnemonics(menuBar());
}

MainWindow::~MainWindow() {
    SetStaleNote(QString());
}

QAction* MainWindow::menuAction(const std::string& name) const {
    const auto it = m_actions.find(name);
    return it == m_actions.end() ? nullptr : it->second;
}

QWidget* MainWindow::controlWidget(const std::string& name) const {
    const auto it = m_widgets.find(name);
    return it == m_widgets.end() ? nullptr : it->second;
}

void MainWindow::Forward(const std::string& name) {
    RunHandler([this, name] { m_form.Click(name); });
}

void MainWindow::BuildMenus() {
    const auto& tree = m_form.model().menuTree;
    std::map<std::string, QMenu*> menus;
    auto hasChildren = [&tree](const std::string& name) {
        return std::any_of(tree.begin(), tree.end(),
                           [&name](const auto& entry) { return entry.parent == name; });
    };
    for (const auto& entry : tree) {
        QMenu* parentMenu = entry.parent.empty() ? nullptr : menus[entry.parent];
        QAction* action = nullptr;
        if (hasChildren(entry.name)) {
            auto* menu = parentMenu != nullptr ? parentMenu->addMenu(QString())
                                               : menuBar()->addMenu(QString());
            menu->setObjectName(ToQt(entry.name));
            menus[entry.name] = menu;
            action = menu->menuAction();
        } else {
            action = parentMenu != nullptr ? parentMenu->addAction(QString())
                                           : menuBar()->addAction(QString());
            const std::string name = entry.name;
            connect(action, &QAction::triggered, this, [this, name] { Forward(name); });
        }
        action->setObjectName(ToQt(entry.name));
        m_actions[entry.name] = action;
        m_menuEntries.push_back(
            {m_form.model().controls.Find(entry.name), action, action->menu() != nullptr, {}});
    }
    // Brizalog's own entries follow the specified ones of their menu, behind a separator.
    std::set<std::string> separated;
    for (const AddedMenuEntry& added : kAddedMenuEntries) {
        const auto menu = menus.find(std::string(added.parent));
        if (menu == menus.end()) {
            continue;
        }
        if (separated.insert(menu->first).second) {
            menu->second->addSeparator();
        }
        QAction* action = menu->second->addAction(ToQt(added.caption));
        const std::string name(added.name);
        action->setObjectName(ToQt(name));
        connect(action, &QAction::triggered, this, [this, name] { Forward(name); });
        m_actions[name] = action;
    }
}

QGroupBox* MainWindow::AddGroup(const std::string& name, const Control& control) {
    auto* box = new QGroupBox(this);
    box->setObjectName(ToQt(name));
    m_groups.push_back({&control, box, false, {}});
    m_widgets[name] = box;
    return box;
}

void MainWindow::AddCell(QWidget* parent, QGridLayout* grid, int row, int column,
                         const std::string& name, const char* caption) {
    const Control* control = m_form.model().controls.Find(name);
    auto* value = new ClickableLabel;
    value->setObjectName(ToQt(name));
    value->setProperty("cell", true);
    value->setAlignment(Qt::AlignCenter);
    value->setMinimumWidth(96);
    value->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    value->setCursor(Qt::PointingHandCursor);
    connect(value, &ClickableLabel::clicked, this, [this, name] { Forward(name); });
    QLabel* label = nullptr;
    if (caption != nullptr) {
        label = new QLabel(QString::fromLatin1(caption), parent);
        label->setProperty("caption", true);
        label->setAlignment(Qt::AlignCenter);
        grid->addWidget(label, row, column);
    }
    grid->addWidget(new LabelHolder(value, parent), row + (caption != nullptr ? 1 : 0), column);
    m_cells.push_back({control, value, label});
    m_widgets[name] = value;
}

void MainWindow::BuildPanel() {
    MainFormModel& m = m_form.model();
    // The panel scrolls when the screen is smaller than the layout: a type 8 panel at 200 % is
    // taller than a laptop's screen.
    auto* central = new QWidget;
    central->setObjectName(QStringLiteral("panel"));
    central->setStyleSheet(PanelStyle(palette()));
    setCentralWidget(new ScrollingArea(central, this));
    m_panel = central;
    m_channelTitleWidth = fontMetrics().horizontalAdvance(QStringLiteral("M")) * 14;
    // Over the viewport: the note stays in view, left of the scroll bar, wherever the panel is
    // scrolled to.
    new StaleShade(static_cast<QScrollArea*>(centralWidget())->viewport());
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(10, 8, 10, 8);
    layout->setSpacing(6);

    auto label = [this](const std::string& name, const Control& control, QLabel* widget) {
        widget->setObjectName(ToQt(name));
        m_labels.emplace_back(&control, widget);
        m_widgets[name] = widget;
        return widget;
    };
    auto indicator = [this](const std::string& name) {
        auto* lamp = new Lamp(this);
        lamp->setObjectName(ToQt(name));
        m_widgets[name] = lamp;
        return lamp;
    };

    // Title of the layout, system type and port, and the two indicators.
    auto* header = new QHBoxLayout;
    header->addWidget(label("Label11", m.Label11, new QLabel(central)));
    header->addStretch();
    header->addWidget(label("Label15", m.Label15, new QLabel(central)));
    header->addSpacing(12);
    header->addWidget(label("Label1", m.Label1, new QLabel(central)));
    header->addSpacing(12);
    m_dataOK = indicator("DataOK");
    m_logOK = indicator("LogOK");
    m_dataOK->setToolTip(QStringLiteral("a frame has come in"));
    m_logOK->setToolTip(QStringLiteral("the logging interval has ended"));
    header->addWidget(m_dataOK);
    header->addWidget(m_logOK);
    layout->addLayout(header);

    // The groups, stacked in the order of their positions.
    m_groupStack = new QVBoxLayout;
    m_groupStack->setSpacing(4);
    layout->addLayout(m_groupStack, 1);

    auto cellRow = [this](QGroupBox* box, const auto& places) {
        auto* grid = new QGridLayout(box);
        grid->setAlignment(Qt::AlignVCenter);
        grid->setHorizontalSpacing(10);
        grid->setVerticalSpacing(1);
        int column = 0;
        for (const CellPlace& place : places) {
            AddCell(box, grid, 0, column++, place.name, place.caption);
        }
        return grid;
    };
    cellRow(AddGroup("Frame1(0)", m.Frame1[0]), kWindmill1);
    QGridLayout* windmill2 = cellRow(AddGroup("Frame1(1)", m.Frame1[1]), kWindmill2);
    m_check1 = new QCheckBox(m_widgets["Frame1(1)"]);
    m_check1->setObjectName(QStringLiteral("Check1"));
    m_widgets["Check1"] = m_check1;
    windmill2->addWidget(m_check1, 1, static_cast<int>(std::size(kWindmill2)));
    connect(m_check1, &QCheckBox::clicked, this, [this](bool ticked) {
        RunHandler([this, ticked] { m_form.SetText("Check1", ticked ? "1" : "0"); });
    });
    cellRow(AddGroup("Frame1(2)", m.Frame1[2]), kAuxDc);
    for (int j = 0; j < 2; ++j) {
        QGroupBox* group = AddGroup("Frame4(" + std::to_string(j) + ")", m.Frame4[j]);
        auto* row = new QHBoxLayout(group);
        row->setSpacing(8);
        for (int k = 4 * j; k < 4 * j + 4; ++k) {
            const std::string index = "(" + std::to_string(k) + ")";
            QGroupBox* cell = AddGroup("Frame5" + index, m.Frame5[k]);
            cell->setParent(group);
            cell->setProperty("channel", true);
            m_groups.back().channel = true;
            auto* grid = new QGridLayout(cell);
            grid->setAlignment(Qt::AlignTop);
            grid->setVerticalSpacing(3);
            AddCell(cell, grid, 0, 0, "Label3" + index, nullptr);
            AddCell(cell, grid, 1, 0, "Label5" + index, nullptr);
            AddCell(cell, grid, 2, 0, "Label13" + index, nullptr);
            row->addWidget(cell);
        }
    }
    cellRow(AddGroup("Frame2", m.Frame2), kMisc);

    // The latest frame, the last report, the frame count and the logging interval.
    // The frame, its count and the report change with every frame: each stands in a holder.
    auto* frame = label("Label2", m.Label2, new ElidedLabel);
    frame->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    layout->addWidget(new LabelHolder(frame, central));
    auto* report = label("ErrorString", m.ErrorString, new ElidedLabel);
    report->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    layout->addWidget(new LabelHolder(report, central));
    auto* footer = new QHBoxLayout;
    footer->addWidget(new QLabel(QStringLiteral("Frames this interval:"), central));
    auto* count = label("goodDATAcounter", m.goodDATAcounter, new QLabel);
    count->setMinimumWidth(count->fontMetrics().horizontalAdvance(QStringLiteral("000000")));
    footer->addWidget(new LabelHolder(count, central));
    footer->addStretch();
    footer->addWidget(new QLabel(QStringLiteral("Logging interval (seconds):"), central));
    m_delay = new QLineEdit(central);
    m_delay->setObjectName(QStringLiteral("delay"));
    m_delay->setFixedWidth(64);
    m_widgets["delay"] = m_delay;
    connect(m_delay, &QLineEdit::textEdited, this, [this](const QString& text) {
        RunHandler([this, text] { m_form.SetText("delay", FromQt(text)); });
    });
    footer->addWidget(m_delay);
    layout->addLayout(footer);
}

// Groups follow each other from the top in the order of their positions, each taking the share
// of the panel's height that lies between its top and the next group's.
void MainWindow::ArrangeGroups() {
    const MainFormModel& m = m_form.model();
    std::vector<const Group*> stacked;
    std::vector<int> tops;
    for (const Group& group : m_groups) {
        if (group.box->parentWidget() == m_widgets.at("Frame4(0)") ||
            group.box->parentWidget() == m_widgets.at("Frame4(1)")) {
            continue;  // the channel cells stand inside their Frame4
        }
        stacked.push_back(&group);
    }
    std::stable_sort(stacked.begin(), stacked.end(), [](const Group* a, const Group* b) {
        return a->control->top < b->control->top;
    });
    for (const Group* group : stacked) {
        tops.push_back(group->control->visible ? group->control->top : -1);
    }
    if (tops == m_arrangedTops && m.panelHeight == m_arrangedHeight) {
        return;
    }
    m_arrangedTops = tops;
    m_arrangedHeight = m.panelHeight;

    while (m_groupStack->count() > 0) {
        m_groupStack->takeAt(0);
    }
    std::vector<const Group*> shown;
    for (const Group* group : stacked) {
        m_groupStack->addWidget(group->box);
        if (group->control->visible) {
            shown.push_back(group);
        }
    }
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const int top = shown[i]->control->top;
        const int next = i + 1 < shown.size() ? shown[i + 1]->control->top : m.panelHeight;
        const int share = std::max(1, next - top);
        m_groupStack->setStretchFactor(shown[i]->box, share);
        shown[i]->box->setMinimumHeight(0);
        shown[i]->box->setMinimumHeight(
            std::max(share / kTwipsPerPixel, shown[i]->box->minimumSizeHint().height()));
    }
    // The window takes the height of the new layout, so a smaller panel leaves no empty space.
    if (isVisible()) {
        m_panel->layout()->activate();
        centralWidget()->updateGeometry();  // the scroll area's hint is the panel's new size
        layout()->activate();
        resize(FittedSize(this, QSize(width(), sizeHint().height())));
    }
}

void MainWindow::Render() {
    const MainFormModel& m = m_form.model();
    const QString title = ToQt(m.caption);
    if (windowTitle() != title) {
        setWindowTitle(title);
    }

    bool captionsChanged = false;
    for (auto& [control, action, opensMenu, shown] : m_menuEntries) {
        if (shown != control->text) {
            shown = control->text;
            QString text = ToQt(shown);
            text.replace(QLatin1Char('&'), QStringLiteral("&&"));
            action->setText(text);
            captionsChanged = true;
        }
        if (!opensMenu && action->isChecked() != control->checked) {
            action->setCheckable(control->checked);
            action->setChecked(control->checked);
        }
        if (action->isEnabled() != control->enabled) {
            action->setEnabled(control->enabled);
        }
        if (action->isVisible() != control->visible) {
            action->setVisible(control->visible);
        }
    }

    if (captionsChanged) {
        AssignMnemonics(menuBar());  // Alt+letter, without a word of the captions changed
    }
    for (Group& group : m_groups) {
        if (group.channel) {
            // A channel's name longer than its cell is cut, whole in the tooltip.
            ShowElidedTitle(group.box, group.control->text, m_channelTitleWidth, group.shown);
            ShowState(group.box, *group.control);
        } else {
            ShowGroup(group.box, *group.control);
        }
    }
    for (const Cell& cell : m_cells) {
        ShowLabel(cell.value, *cell.control);
        if (cell.caption != nullptr &&
            cell.caption->isVisibleTo(cell.caption->parentWidget()) != cell.control->visible) {
            cell.caption->setVisible(cell.control->visible);
        }
    }
    for (const auto& [control, widget] : m_labels) {
        ShowLabel(widget, *control);
        const QString tip = widget->text().size() > 60 ? widget->text() : QString();
        if (widget->toolTip() != tip) {
            widget->setToolTip(tip);
        }
    }
    m_dataOK->Show(m.DataOK);
    m_logOK->Show(m.LogOK);
    ShowTextBox(m_delay, m.delay);
    ShowButton(m_check1, m.Check1);
    ArrangeGroups();

    if (m_form.ExitRequested()) {
        close();
    }
}

// ---- Status bar -------------------------------------------------------------------------------

void MainWindow::BuildStatusBar() {
    auto label = [this](const char* name, const QString& tip) {
        auto* text = new QLabel(this);
        text->setObjectName(QString::fromLatin1(name));
        text->setToolTip(tip);
        text->setContentsMargins(4, 0, 10, 0);
        return text;
    };
    m_portText = label("statusPort", QStringLiteral("The port and the device it stands for"));
    m_loggingText =
        label("statusLogging", QStringLiteral("Whether records are written, and where"));
    m_frameText = label("statusFrame", QStringLiteral("When the last frame came in"));
    m_rateText = label("statusRate", QStringLiteral("Frames per second over the last 10 s"));
    m_unpluggedText = label("statusUnplugged", QString());
    QFont bold = m_unpluggedText->font();
    bold.setBold(true);
    m_unpluggedText->setFont(bold);
    m_unpluggedText->hide();
    m_noticeText = new ElidedLabel(this);
    m_noticeText->setObjectName(QStringLiteral("statusNotice"));
    m_noticeText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QStatusBar* bar = statusBar();
    bar->setSizeGripEnabled(true);
    // A device that has gone comes first: it is what the user has to act on.
    for (QLabel* text : {m_unpluggedText, m_portText, m_loggingText, m_frameText, m_rateText}) {
        bar->addWidget(text);
    }
    bar->addWidget(m_noticeText, 1);
    // Once a second: the texts change at that pace at most, and a silence is noticed even when
    // no event comes at all.
    auto* clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &MainWindow::UpdateStatus);
    clock->start(1000);
    UpdateStatus();
}

Moment MainWindow::Now() const {
    const double seconds = m_seconds ? m_seconds() : m_monotonic.elapsed() / 1000.0;
    return {seconds, m_form.clock().Now()};
}

void MainWindow::SetSecondsSource(std::function<double()> seconds) {
    m_seconds = std::move(seconds);
    m_status = StatusLine(Now());
}

void MainWindow::ReceiveSerial() {
    const long before = m_form.state().GoodDataCount;
    m_form.MSComm1_OnComm();
    // Within one serial event no tick can clear the count: what it grew by is what was cut.
    const long after = m_form.state().GoodDataCount;
    if (after > before) {
        m_status.Frames(after - before, Now());
        // The first frame after a silence lifts the stale notes at once.
        if (!StaleNote().isEmpty()) {
            SetStaleNote(QString());
        }
    }
}

void MainWindow::DeviceLost() {
    m_status.DeviceLost(Now());
    m_shownPort = -1;
    UpdateStatus();
}

void MainWindow::DeviceBack() {
    m_status.DeviceBack();
    m_shownPort = -1;
    UpdateStatus();
}

void MainWindow::ShowNotice(std::string_view source, const std::string& text) {
    m_status.SetNotice(source, text);
    UpdateStatus();
}

void MainWindow::UpdateStatus() {
    const SharedState& state = m_form.state();
    const auto show = [](QLabel* label, const std::string& text) {
        const QString shown = QString::fromStdString(text);
        if (label->text() != shown) {
            label->setText(shown);
        }
        if (label->isVisibleTo(label->parentWidget()) == shown.isEmpty()) {
            label->setVisible(!shown.isEmpty());
        }
    };
    const int port = static_cast<int>(state.settings.PortNumber);
    if (port != m_shownPort) {
        m_shownPort = port;
        // A link under ports/ is named by the device it points at.
        const QString path = ResolvePort(m_form.programFolder(), port);
        const QString device = QFileInfo(path).canonicalFilePath();
        m_status.SetPort(port, (device.isEmpty() ? path : device).toStdString());
    }
    std::vector<std::string> files;
    const LocalDateTime now = m_form.clock().Now();
    for (const LogFile& file : LogFilesOf(state.settings.SystemType)) {
        const std::string literal =
            LogFileLiteral(file.prefix, DateTag(now, state.settings.LogDelay <= 5));
        files.push_back(literal.substr(literal.rfind('/') + 1));
    }
    m_status.SetLogging(state.LoggingActive == 1, std::move(files));
    const double seconds = Now().seconds;
    const auto stale =
        m_status.StaleNote(seconds, std::max(1, static_cast<int>(state.settings.LogDelay)));
    SetStaleNote(stale ? QString::fromStdString(*stale) : QString());
    show(m_portText, m_status.PortText());
    show(m_loggingText, m_status.LoggingText());
    // While the device is away the rate is nought and the last frame came about when it went:
    // their place goes to the time it went, which a narrow window would otherwise cut.
    const std::string unplugged = m_status.UnpluggedText();
    show(m_frameText, unplugged.empty() ? m_status.LastFrameText() : std::string());
    show(m_rateText, unplugged.empty() ? m_status.RateText(seconds) : std::string());
    show(m_unpluggedText, unplugged);
    QStringList notices;
    for (const std::string& notice : m_status.Notices()) {
        notices << QString::fromStdString(notice);
    }
    show(m_noticeText, notices.join(QStringLiteral(" · ")).toStdString());
    m_noticeText->setToolTip(notices.join(QLatin1Char('\n')));
}

void MainWindow::changeEvent(QEvent* event) {
    // A palette changed while the program runs (a desktop switched to dark) is followed.
    if (event->type() == QEvent::PaletteChange && m_panel != nullptr) {
        const QString style = PanelStyle(palette());
        if (m_panel->styleSheet() != style) {
            m_panel->setStyleSheet(style);
        }
    }
    QMainWindow::changeEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->accept();
}

}  // namespace brizalog
