#include "help/qt/help_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/window_fit.h"

namespace brizalog {

HelpWindow::HelpWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_viewer(std::move(folder), dialogs) {
    setObjectName(QStringLiteral("info"));
    m_list = new QTreeWidget(this);
    m_list->setObjectName(QStringLiteral("ListView1"));
    m_list->setColumnCount(2);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->header()->setStretchLastSection(true);
    const int em = fontMetrics().horizontalAdvance(QStringLiteral("M"));
    m_list->setColumnWidth(0, em);
    m_list->setMinimumSize(em * 12, em * 6);

    auto* buttons = new QHBoxLayout;
    for (const auto& [name, control] : m_viewer.model().controls.items()) {
        auto* button = new QPushButton(this);
        button->setObjectName(ToQt(name));
        button->setAutoDefault(false);
        const std::string clicked = name;
        connect(button, &QPushButton::clicked, this,
                [this, clicked] { RunHandler([this, clicked] { m_viewer.Click(clicked); }); });
        m_buttons.emplace_back(button, control);
        // The authors' tool stands apart from the topics.
        if (name == "codeMaker") {
            continue;
        }
        buttons->addWidget(button);
    }
    buttons->addStretch();
    buttons->addWidget(m_buttons.front().first);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(m_list, 1);
    // Wide enough for a topic's lines; the list scrolls whatever the screen cannot show.
    FitToScreen(this, QSize(em * 44, em * 28));
    AddRenderer(this, [this] { Render(); });
}

void HelpWindow::Load() {
    RunHandler([this] { m_viewer.Form_Load(); });
}

void HelpWindow::reject() {
    RunHandler([this] { m_viewer.TitleBarClose(); });
}

void HelpWindow::Render() {
    const HelpViewerModel& m = m_viewer.model();
    setWindowTitle(ToQt(m.caption));
    for (const auto& [button, control] : m_buttons) {
        // "&" is a character of the caption, not a keyboard mark.
        QString text = ToQt(control->text);
        text.replace(QStringLiteral("&"), QStringLiteral("&&"));
        if (button->text() != text) {
            button->setText(text);
        }
        ShowState(button, *control);
    }
    const QStringList headings{QString(), ToQt(m.heading)};
    QTreeWidgetItem* header = m_list->headerItem();
    if (header->text(1) != headings[1]) {
        m_list->setHeaderLabels(headings);
    }
    // The rows change only with the topic: the list is refilled then, and only then.
    if (m_rowsShown != m.rows) {
        m_list->clear();
        QList<QTreeWidgetItem*> items;
        for (const std::string& line : m.rows) {
            items << new QTreeWidgetItem(QStringList{QString(), ToQt(line)});
        }
        m_list->addTopLevelItems(items);
        m_rowsShown = m.rows;
    }
    if (m_viewer.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
