#include "setup/qt/calibration_window.h"

#include <QAction>
#include <QButtonGroup>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "catalogue/channels.h"
#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/keyboard.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

void Show(QWidget* widget, const Control& control) {
    if (widget->isEnabled() != control.enabled) {
        widget->setEnabled(control.enabled);
    }
}

}  // namespace

CalibrationWindow::CalibrationWindow(SharedState& state, std::filesystem::path folder,
                                     Dialogs& dialogs, TimerBackend& timers, QWidget* parent)
    : QDialog(parent), m_form(state, std::move(folder), dialogs), m_timers(timers) {
    setObjectName(QStringLiteral("CALIBRATION"));
    CalibrationModel& m = m_form.model();

    auto* menu = new QMenuBar(this);
    m_save = menu->addAction(QString());
    m_save->setObjectName(QStringLiteral("SAVEcalibration"));
    m_save->setShortcut(QKeySequence::Save);
    connect(m_save, &QAction::triggered, this,
            [this] { RunHandler([this] { m_form.SAVEcalibration_Click(); }); });
    m_exit = menu->addAction(QString());
    m_exit->setObjectName(QStringLiteral("CalibrationExit"));
    connect(m_exit, &QAction::triggered, this,
            [this] { RunHandler([this] { m_form.CalibrationExit_Click(); }); });

    m_table = new QWidget(this);
    auto* grid = new QGridLayout(m_table);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(4);
    const char* headings[] = {"",    "RAW", "--", "ZERO",    "X",
                              "SET", "=",   "",   "DISPLAY", "CHANNEL TYPE"};
    const int headingColumns[] = {0, 1, 2, 3, 4, 5, 6, 6, 7, 8};
    for (int h = 0; h < 10; ++h) {
        auto* label = new QLabel(QString::fromLatin1(headings[h]));
        label->setAlignment(Qt::AlignCenter);
        label->setStyleSheet(QStringLiteral("font-weight: bold;"));
        grid->addWidget(label, 0, headingColumns[h], 1, h == 9 ? 2 : 1);
    }
    const int em = fontMetrics().horizontalAdvance(QStringLiteral("M"));
    const QString readout = QStringLiteral(
        "background-color: #20242a; color: #7CFC9A; font-family: monospace; padding: 2px 6px;");
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        CalibrationRow& row = m.rows[i];
        RowWidgets& w = m_rows[i];
        int cell = 0;
        auto place = [&](QWidget* widget, int column) {
            grid->addWidget(widget, i, column);
            w.cells[cell++] = widget;
        };
        w.channel = new QLabel;
        w.channel->setObjectName(IndexedName("Channel", i));
        w.channel->setMinimumWidth(em * 12);
        place(w.channel, 0);
        w.raw = new QLabel;
        w.raw->setObjectName(IndexedName("Label1", i));
        w.raw->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        w.raw->setMinimumWidth(em * 5);
        w.raw->setStyleSheet(readout);
        place(w.raw, 1);
        place(new QLabel(QStringLiteral("\u2212")), 2);
        w.zero = new QPushButton;
        w.zero->setObjectName(IndexedName("AUTOZEROBUTTON", i));
        w.zero->setAutoDefault(false);
        w.zero->setToolTip(QStringLiteral("Take the present raw reading as the zero"));
        connect(w.zero, &QPushButton::clicked, this,
                [this, i] { RunHandler([this, i] { m_form.AUTOZEROBUTTON_Click(i); }); });
        place(w.zero, 3);
        place(new QLabel(QStringLiteral("\u00d7")), 4);
        w.factor = new QLineEdit;
        w.factor->setObjectName(IndexedName("Text1", i));
        w.factor->setFixedWidth(em * 6);
        connect(w.factor, &QLineEdit::textEdited, this,
                [&row](const QString& text) { row.Text1.text = FromQt(text); });
        place(w.factor, 5);
        place(new QLabel(QStringLiteral("=")), 6);
        w.display = new QLabel;
        w.display->setObjectName(IndexedName("Label2", i));
        w.display->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        w.display->setMinimumWidth(em * 6);
        w.display->setStyleSheet(readout);
        place(w.display, 7);

        auto* types = new QWidget;
        auto* typeRow = new QHBoxLayout(types);
        typeRow->setContentsMargins(0, 0, 0, 0);
        auto* group = new QButtonGroup(types);
        auto option = [&](const char* name, void (CalibrationForm::*click)(int)) {
            auto* button = new QRadioButton;
            button->setObjectName(IndexedName(name, i));
            group->addButton(button);
            typeRow->addWidget(button);
            connect(button, &QRadioButton::clicked, this,
                    [this, i, click] { RunHandler([this, i, click] { (m_form.*click)(i); }); });
            return button;
        };
        // Without a chosen option in the model no button shows as chosen.
        group->setExclusive(false);
        w.amps = option("Amps", &CalibrationForm::Amps_Click);
        if (CalibrationForm::HasVoltsAndReset(i)) {
            w.volts = option("Volts", &CalibrationForm::Volts_Click);
        } else {
            w.pulse = option("Pulse", &CalibrationForm::Pulse_Click);
        }
        place(types, 8);
        if (CalibrationForm::HasVoltsAndReset(i)) {
            w.reset = new QPushButton;
            w.reset->setObjectName(IndexedName("ZeroReset", i));
            w.reset->setAutoDefault(false);
            connect(w.reset, &QPushButton::clicked, this,
                    [this, i] { RunHandler([this, i] { m_form.ZeroReset_Click(i); }); });
            place(w.reset, 9);
        }
    }

    m_menu = menu;
    m_rowsArea = new ScrollingArea(m_table, this);
    auto* layout = new QVBoxLayout(this);
    layout->setMenuBar(menu);
    layout->addWidget(m_rowsArea, 1);
    FitToScreen(this);

    AddRenderer(this, [this] { Render(); });
}

CalibrationWindow::~CalibrationWindow() {
    m_form.timer1().Detach();
}

void CalibrationWindow::Load() {
    RunHandler([this] { m_form.Form_Load(); });
    m_form.timer1().Attach(&m_timers);
    adjustSize();
}

void CalibrationWindow::reject() {
    RunHandler([this] { m_form.TitleBarClose(); });
}

void CalibrationWindow::Render() {
    const CalibrationModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    ShowMenuCaption(m_save, ToQt(m.SAVEcalibration.text));
    m_save->setEnabled(m.SAVEcalibration.enabled);
    ShowMenuCaption(m_exit, ToQt(m.CalibrationExit.text));
    if (m_rowsArea->isVisibleTo(this) == m.shrunk) {
        m_rowsArea->setVisible(!m.shrunk);
        // Shrunk to its title, the window stays wide enough for the whole title and both menu
        // entries: its message tells the user to press EXIT there.
        const int title = fontMetrics().horizontalAdvance(windowTitle()) +
                          fontMetrics().horizontalAdvance(QStringLiteral("M")) * 12;
        setMinimumWidth(m.shrunk ? std::max(m_menu->sizeHint().width(), title) : 0);
        adjustSize();
    }
    for (int i = 1; i <= kMeasuredChannels; ++i) {
        const CalibrationRow& row = m.rows[i];
        RowWidgets& w = m_rows[i];
        const bool shown = row.Channel.visible;
        for (QWidget* cell : w.cells) {
            if (cell != nullptr && cell->isVisibleTo(m_table) != shown) {
                cell->setVisible(shown);
            }
        }
        ShowText(w.channel, row.Channel.text);
        ShowText(w.raw, row.Label1.text);
        ShowText(w.zero, row.AUTOZEROBUTTON.text);
        Show(w.zero, row.AUTOZEROBUTTON);
        // The factor box stands in the row: a withdrawn row takes it along.
        Control factor = row.Text1;
        factor.visible = shown && row.Text1.visible;
        ShowTextBox(w.factor, factor);
        ShowText(w.display, row.Label2.text);
        for (auto [button, control] : {std::pair{w.amps, &row.Amps}, std::pair{w.volts, &row.Volts},
                                       std::pair{w.pulse, &row.Pulse}}) {
            if (button != nullptr) {
                ShowText(button, control->text);
                if (button->isChecked() != control->checked) {
                    button->setChecked(control->checked);
                }
            }
        }
        if (w.reset != nullptr) {
            ShowText(w.reset, row.ZeroReset.text);
        }
    }
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
