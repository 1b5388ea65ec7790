#include "setup/qt/options_window.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleValidator>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/window_fit.h"

namespace brizalog {

OptionsWindow::OptionsWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_form(std::move(folder), dialogs) {
    setObjectName(ToQt(OptionsForm::kWindow));
    auto* outer = new QVBoxLayout(this);
    auto* rows = new QWidget;
    auto* column = new QVBoxLayout(rows);
    const int em = fontMetrics().horizontalAdvance(QStringLiteral("M"));

    QGroupBox* group = nullptr;
    QFormLayout* form = nullptr;
    for (const OptionRow& row : OptionRows()) {
        if (group == nullptr || group->title() != ToQt(row.group)) {
            group = new QGroupBox(ToQt(row.group), rows);
            form = new QFormLayout(group);
            form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
            column->addWidget(group);
        }
        const std::string tag(row.tag);
        const QString hint = ToQt(row.hint);
        if (row.kind == OptionKind::Flag) {
            auto* check = new QCheckBox(ToQt(row.caption), group);
            check->setObjectName(ToQt(tag));
            check->setToolTip(hint);
            connect(check, &QCheckBox::clicked, this, [this, tag](bool on) {
                RunHandler([this, &tag, on] { m_form.SetText(tag, on ? "1" : "0"); });
            });
            m_checks[tag] = check;
            form->addRow(check);
            continue;
        }
        auto* box = new QLineEdit(group);
        box->setObjectName(ToQt(tag));
        box->setToolTip(hint);
        box->setMinimumWidth(em * 18);
        // What an empty box means, where the row says so ("Empty: 1883, or 8883 with TLS.").
        if (hint.startsWith(QStringLiteral("Empty: "))) {
            box->setPlaceholderText(hint.mid(7));
        }
        if (row.kind == OptionKind::Secret) {
            box->setEchoMode(QLineEdit::Password);
        }
        if (row.kind == OptionKind::Number) {
            auto* numbers = new QDoubleValidator(box);
            numbers->setLocale(QLocale::c());
            numbers->setNotation(QDoubleValidator::StandardNotation);
            box->setValidator(numbers);
        }
        connect(box, &QLineEdit::textEdited, this, [this, tag](const QString& text) {
            RunHandler([this, &tag, &text] { m_form.SetText(tag, FromQt(text)); });
        });
        m_boxes[tag] = box;
        auto* label = new QLabel(ToQt(row.caption), group);
        label->setBuddy(box);
        label->setToolTip(hint);
        if (row.kind != OptionKind::FilePath) {
            form->addRow(label, box);
            continue;
        }
        auto* line = new QHBoxLayout;
        line->addWidget(box, 1);
        auto* browse = new QPushButton(QStringLiteral("Browse..."), group);
        browse->setObjectName(ToQt(tag + "Browse"));
        browse->setAutoDefault(false);
        connect(browse, &QPushButton::clicked, this, [this, tag] { Browse(tag); });
        line->addWidget(browse);
        form->addRow(label, line);
    }
    column->addStretch();

    auto* scroll = new QScrollArea(this);
    scroll->setWidget(rows);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    outer->addWidget(scroll, 1);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    QPushButton* cancel =
        buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    ok->setObjectName(QStringLiteral("OK"));
    cancel->setObjectName(QStringLiteral("Cancel"));
    ok->setDefault(true);
    cancel->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, [this] { RunHandler([this] { m_form.OK_Click(); }); });
    connect(cancel, &QPushButton::clicked, this, &OptionsWindow::reject);
    outer->addWidget(buttons);

    // As wide as the rows want, as tall as they want but never beyond the screen: the rest
    // scrolls.
    rows->adjustSize();
    const QRect screen =
        (parent != nullptr ? parent->screen() : QDialog::screen())->availableGeometry();
    const int width = std::min(rows->sizeHint().width() + em * 3, screen.width() * 9 / 10);
    const int height = std::min(rows->sizeHint().height() + buttons->sizeHint().height() + em * 3,
                                screen.height() * 85 / 100);
    resize(width, height);
    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
}

// The keyboard starts at the first row, whatever the scroll area would take first.
void OptionsWindow::Load() {
    RunHandler([this] { m_form.Form_Load(); });
    const std::string first(OptionRows().front().tag);
    if (const auto check = m_checks.find(first); check != m_checks.end()) {
        check->second->setFocus();
    } else if (const auto box = m_boxes.find(first); box != m_boxes.end()) {
        box->second->setFocus();
    }
}

void OptionsWindow::reject() {
    RunHandler([this] { m_form.TitleBarClose(); });
}

void OptionsWindow::Browse(const std::string& tag) {
    QLineEdit* box = m_boxes.at(tag);
    const QString chosen =
        QFileDialog::getOpenFileName(this, QStringLiteral("Choose a file"), box->text());
    if (chosen.isEmpty()) {
        return;
    }
    box->setText(chosen);
    RunHandler([this, &tag, &chosen] { m_form.SetText(tag, FromQt(chosen)); });
}

void OptionsWindow::Render() {
    const OptionsFormModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    for (const auto& [tag, check] : m_checks) {
        const Control& control = *m.Row(tag);
        if (check->isChecked() != control.checked) {
            check->setChecked(control.checked);
        }
    }
    for (const auto& [tag, box] : m_boxes) {
        ShowTextBox(box, *m.Row(tag));
    }
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
