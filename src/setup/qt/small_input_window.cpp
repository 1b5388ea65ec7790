#include "setup/qt/small_input_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

namespace brizalog {

SmallInputWindow::SmallInputWindow(std::string_view window, SharedState& state, QWidget* parent)
    : QDialog(parent), m_form(window, state) {
    setObjectName(ToQt(window));
    auto* layout = new QVBoxLayout(this);
    const int em = fontMetrics().horizontalAdvance(QStringLiteral("M"));

    if (m_form.IsColourChart()) {
        auto* grid = new QGridLayout;
        grid->setSpacing(6);
        for (int i = 1; i <= 16; ++i) {
            QPushButton* swatch = LabelButton(i);
            const QColor colour = ToQColor(m_form.model().Label[i].colour);
            // The swatch's colour is the chart's; its caption takes black or white, whichever
            // reads on it.
            const QColor text = TextOn(colour);
            swatch->setMinimumSize(em * 4, em * 3);
            swatch->setStyleSheet(QStringLiteral("QPushButton { background-color: %1; color: %2; "
                                                 "font-weight: bold; border: 1px solid #555; } "
                                                 "QPushButton:focus { border: 3px solid %2; }")
                                      .arg(colour.name(), text.name()));
            grid->addWidget(swatch, (i - 1) / 8, (i - 1) % 8);
        }
        layout->addLayout(grid);
        auto* row = new QHBoxLayout;
        row->addStretch();
        row->addWidget(LabelButton(17));
        layout->addLayout(row);
    } else {
        m_text = new QLineEdit(this);
        m_text->setObjectName(QStringLiteral("Text1"));
        m_text->setMinimumWidth(em * 22);
        connect(m_text, &QLineEdit::textEdited, this,
                [this](const QString& text) { m_form.Text1_Change(FromQt(text)); });
        layout->addWidget(m_text);
        auto* row = new QHBoxLayout;
        QPushButton* save = LabelButton(1);
        save->setDefault(true);
        row->addWidget(save);
        row->addStretch();
        row->addWidget(LabelButton(2));
        layout->addLayout(row);
    }
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
}

QPushButton* SmallInputWindow::LabelButton(int index) {
    auto* button = new QPushButton(this);
    button->setObjectName(QStringLiteral("Label%1").arg(index));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this,
            [this, index] { RunHandler([this, index] { m_form.Label_Click(index); }); });
    m_labels[index] = button;
    return button;
}

void SmallInputWindow::Load() {
    RunHandler([this] { m_form.Form_Load(); });
    if (m_text != nullptr) {
        m_text->selectAll();
        m_text->setFocus();
    }
}

void SmallInputWindow::reject() {
    RunHandler([this] { m_form.TitleBarClose(); });
}

void SmallInputWindow::Render() {
    const SmallInputModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    if (m_text != nullptr) {
        ShowTextBox(m_text, m.Text1);
    }
    for (int i = 1; i <= 17; ++i) {
        if (m_labels[i] != nullptr) {
            ShowText(m_labels[i], m.Label[i].text);
        }
    }
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
