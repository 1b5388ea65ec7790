#include "setup/qt/program_setup_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

namespace brizalog {

ProgramSetupWindow::ProgramSetupWindow(SharedState& state, std::filesystem::path folder,
                                       Dialogs& dialogs, PortProbe& probe, QWidget* parent)
    : QDialog(parent), m_form(state, std::move(folder), dialogs, probe) {
    setObjectName(QStringLiteral("ProgramSetup"));
    ProgramSetupModel& m = m_form.model();

    m_port = List("PortNumber", m.PortNumber);
    m_baud = List("BaudSelect", m.BaudSelect);
    m_logDelay = List("LogDelay", m.LogDelay);
    m_wsUnits = Text("WSUnits", m.WSUnits);
    m_personal = Text("Personalization", m.Personalization);
    m_saveExcel = Check("SaveExcel", m.SaveExcel);
    m_logOn = Check("LogOn", m.LogOn);
    m_messages = Check("DisplayMessages", m.DisplayMessages);

    m_findPorts = new ClickableLabel(this);
    m_findPorts->setObjectName(QStringLiteral("Label7"));
    m_findPorts->setCursor(Qt::PointingHandCursor);
    m_findPorts->setStyleSheet(
        QStringLiteral("color: %1; text-decoration: underline;")
            .arg(ReadableOn(palette().color(QPalette::Link), palette().color(QPalette::Window))
                     .name()));
    connect(m_findPorts, &ClickableLabel::clicked, this,
            [this] { RunHandler([this] { m_form.Label7_Click(); }); });

    // Find ALL PORTS comes right after the port it helps to choose.
    setTabOrder(m_port, m_findPorts);
    setTabOrder(m_findPorts, m_baud);
    auto* portRow = new QHBoxLayout;
    portRow->addWidget(m_port);
    portRow->addWidget(m_findPorts);
    portRow->addStretch();

    auto* delayRow = new QHBoxLayout;
    delayRow->addWidget(m_logDelay);
    delayRow->addWidget(new QLabel(QStringLiteral("Seconds ( 1 - 600 )"), this));
    delayRow->addStretch();

    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("Manual assigned COMM #"), portRow);
    fields->addRow(QStringLiteral("Baud Rate Select"), m_baud);
    fields->addRow(QStringLiteral("Default Logging Interval"), delayRow);
    fields->addRow(QStringLiteral("Display Wind Speed units"), m_wsUnits);
    fields->addRow(QStringLiteral("OWN name"), m_personal);

    auto* switches = new QVBoxLayout;
    switches->addWidget(m_saveExcel);
    switches->addWidget(m_logOn);
    switches->addWidget(m_messages);

    auto* costs = new QGroupBox(QStringLiteral("Power costs cents/kWh"), this);
    auto* costRow = new QHBoxLayout(costs);
    for (int i = 0; i < 3; ++i) {
        m_cents[i] = List(("Cents(" + std::to_string(i) + ")").c_str(), m.Cents[i]);
        costRow->addWidget(m_cents[i]);
    }

    m_save = new QPushButton(this);
    m_save->setObjectName(QStringLiteral("SaveSettingsButton"));
    m_save->setAutoDefault(false);
    m_abort = new QPushButton(this);
    m_abort->setObjectName(QStringLiteral("Exit_no_save"));
    m_abort->setAutoDefault(false);
    connect(m_save, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.SaveSettingsButton_Click(); }); });
    connect(m_abort, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.Exit_no_save_Click(); }); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_save);
    buttons->addStretch();
    buttons->addWidget(m_abort);

    // The fields scroll when the screen is too small for them; the two buttons stay in view.
    auto* body = new QWidget;
    auto* bodyLayout = new QVBoxLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->addLayout(fields);
    bodyLayout->addLayout(switches);
    bodyLayout->addWidget(costs);
    bodyLayout->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new ScrollingArea(body, this), 1);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    FitToScreen(this);

    AddRenderer(this, [this] { Render(); });
}

QComboBox* ProgramSetupWindow::List(const char* name, Control& control) {
    auto* box = new QComboBox(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setMinimumWidth(110);
    connect(box, &QComboBox::currentTextChanged, this,
            [&control](const QString& text) { control.text = FromQt(text); });
    return box;
}

QLineEdit* ProgramSetupWindow::Text(const char* name, Control& control) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QString::fromLatin1(name));
    connect(box, &QLineEdit::textEdited, this,
            [&control](const QString& text) { control.text = FromQt(text); });
    return box;
}

QCheckBox* ProgramSetupWindow::Check(const char* name, Control& control) {
    auto* box = new QCheckBox(this);
    box->setObjectName(QString::fromLatin1(name));
    connect(box, &QCheckBox::toggled, this, [&control](bool on) { control.checked = on; });
    return box;
}

void ProgramSetupWindow::Load() {
    RunHandler([this] { m_form.Form_Load(); });
}

void ProgramSetupWindow::Render() {
    const ProgramSetupModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    ShowList(m_port, m.PortNumber, m.PortNumberItems);
    ShowList(m_baud, m.BaudSelect, m.BaudSelectItems);
    ShowList(m_logDelay, m.LogDelay, m.LogDelayItems);
    for (int i = 0; i < 3; ++i) {
        ShowList(m_cents[i], m.Cents[i], m.CentsItems[i]);
    }
    ShowTextBox(m_wsUnits, m.WSUnits);
    ShowTextBox(m_personal, m.Personalization);
    ShowButton(m_saveExcel, m.SaveExcel);
    ShowButton(m_logOn, m.LogOn);
    ShowButton(m_messages, m.DisplayMessages);
    ShowButton(m_save, m.SaveSettingsButton);
    ShowButton(m_abort, m.Exit_no_save);
    m_findPorts->setText(ToQt(m.Label7.text));
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
