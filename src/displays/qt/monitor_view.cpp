#include "displays/qt/monitor_view.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/keyboard.h"
#include "ui/window_fit.h"

namespace brizalog {

MonitorView::MonitorView(TimerBackend& timers) : QWidget(nullptr, Qt::Window), m_timers(timers) {
    setAttribute(Qt::WA_DeleteOnClose);
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
}

MonitorView::~MonitorView() = default;

void MonitorView::SetMonitor(std::unique_ptr<MonitorWindow> monitor) {
    m_monitor = std::move(monitor);
    setObjectName(ToQt(m_monitor->name()));
    m_monitor->AttachTimer(m_timers);
}

void MonitorView::Load() {
    RunHandler([this] { m_monitor->Form_Load(); });
    Render();
}

void MonitorView::Render() {
    if (m_shown && m_monitor->Changes() == m_shownChanges) {
        return;
    }
    m_shown = true;
    m_shownChanges = m_monitor->Changes();
    const QString title = ToQt(m_monitor->caption);
    if (windowTitle() != title) {
        setWindowTitle(title);
    }
    for (const auto& [control, action] : m_entries) {
        ShowMenuCaption(action, ToQt(control->text));
    }
    RenderModel();
    if (m_monitor->CloseRequested() && isVisible()) {
        close();
    }
}

void MonitorView::Forward(const std::string& name) {
    RunHandler([this, name] { m_monitor->Click(name); });
}

ClickableLabel* MonitorView::ClickLabel(const std::string& name) {
    auto* label = new ClickableLabel(this);
    label->setObjectName(ToQt(name));
    label->setCursor(Qt::PointingHandCursor);
    connect(label, &ClickableLabel::clicked, this, [this, name] { Forward(name); });
    return label;
}

QAction* MonitorView::MenuEntry(QMenuBar* bar, const std::string& name) {
    QAction* action = bar->addAction(ToQt(m_monitor->controls.Find(name)->text));
    action->setObjectName(ToQt(name));
    connect(action, &QAction::triggered, this, [this, name] { Forward(name); });
    m_entries.emplace_back(m_monitor->controls.Find(name), action);
    AssignMnemonics(bar);
    return action;
}

void MonitorView::closeEvent(QCloseEvent* event) {
    m_monitor->Close();
    event->accept();
}

void MonitorView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace brizalog
