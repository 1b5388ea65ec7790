#include "acquisition/qt/find_comms_window.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/window_fit.h"

namespace brizalog {

FindCommsWindow::FindCommsWindow(Settings& settings, PortProbe& probe, QWidget* parent)
    : QDialog(parent), m_form(settings, probe) {
    setObjectName(QStringLiteral("FindComms"));
    m_findPorts = new QPushButton(this);
    m_findPorts->setObjectName(QStringLiteral("FindPORTS"));
    m_exit = new QPushButton(this);
    m_exit->setObjectName(QStringLiteral("ExitFindCOMM"));
    m_exit->setAutoDefault(false);
    m_cbocomm = new QComboBox(this);
    m_cbocomm->setObjectName(QStringLiteral("cbocomm"));
    m_cbocomm->setMinimumWidth(120);
    m_selectedPort = new QLineEdit(this);
    m_selectedPort->setObjectName(QStringLiteral("SelectedPort"));
    m_selectedPort->setReadOnly(true);
    m_availablePorts = new QPlainTextEdit(this);
    m_availablePorts->setObjectName(QStringLiteral("AvailablePORTS"));
    m_availablePorts->setReadOnly(true);
    m_availablePorts->setMaximumHeight(140);

    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("select port"), m_cbocomm);
    fields->addRow(QStringLiteral("port selected"), m_selectedPort);
    fields->addRow(QStringLiteral("ports available"), m_availablePorts);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_findPorts);
    buttons->addStretch();
    buttons->addWidget(m_exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);

    connect(m_findPorts, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.FindPORTS_Click(); }); });
    connect(m_cbocomm, qOverload<int>(&QComboBox::activated), this,
            [this](int index) { RunHandler([this, index] { m_form.cbocomm_Click(index); }); });
    connect(m_exit, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.ExitFindCOMM_Click(); }); });
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
    Render();
}

void FindCommsWindow::Render() {
    const FindCommsModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    ShowButton(m_findPorts, m.FindPORTS);
    ShowButton(m_exit, m.ExitFindCOMM);
    ShowList(m_cbocomm, m.cbocomm, m.cbocommItems);
    ShowText(m_selectedPort, m.SelectedPort.text);
    const QString available = MessageText(m.AvailablePORTS.text);
    if (m_availablePorts->toPlainText() != available) {
        m_availablePorts->setPlainText(available);
    }
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
