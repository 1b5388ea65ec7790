#include "setup/qt/channel_setup_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "catalogue/channels.h"
#include "ui/control_view.h"
#include "ui/event_gate.h"
#include "ui/theme.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

// A name in its channel's colour, on black or white, whichever it reads on best: every colour
// reads at 4.5 : 1 or better on one of the two, in a light theme or a dark one. An inactive
// name is faded towards its ground.
QString NameStyle(int colour, bool active) {
    QColor text = ToQColor(colour);
    const QColor ground = TextOn(text);
    if (!active) {
        text = Mix(text, ground, 0.5);
    }
    return QStringLiteral("background-color: %1; color: %2; padding: 2px 8px; border-radius: 3px;")
        .arg(ground.name(), text.name());
}

void Show(QWidget* widget, bool visible, bool enabled) {
    if (widget->isVisibleTo(widget->parentWidget()) != visible) {
        widget->setVisible(visible);
    }
    if (widget->isEnabled() != enabled) {
        widget->setEnabled(enabled);
    }
}

}  // namespace

ChannelSetupWindow::ChannelSetupWindow(std::string_view window, SharedState& state,
                                       std::filesystem::path folder, Dialogs& dialogs,
                                       QWidget* parent)
    : QDialog(parent), m_form(window, state, std::move(folder), dialogs) {
    setObjectName(ToQt(window));

    auto* rows = new QWidget;
    auto* grid = new QGridLayout(rows);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    int column = 0;
    auto heading = [&](const char* text) {
        auto* label = new QLabel(QString::fromLatin1(text));
        label->setStyleSheet(QStringLiteral("font-weight: bold;"));
        grid->addWidget(label, 0, column++);
    };
    heading("Ch");
    heading(m_form.HasLimitsAndColours() ? "Enabled" : "Shown");
    heading("Channel name");
    if (m_form.HasLimitsAndColours()) {
        heading("Maximum reading");
        heading("Line colour");
    }
    if (m_form.HasTagColumn()) {
        heading("Tag");
    }
    for (int i = 1; i <= kChannelCount; ++i) {
        AddRow(grid, i);
    }
    grid->setRowStretch(kChannelCount + 1, 1);
    grid->setColumnStretch(column, 1);  // spare width goes right of the last column

    m_scroll = new ScrollingArea(rows, this);

    m_save = new QPushButton(this);
    m_save->setObjectName(QStringLiteral("SaveSettings"));
    m_save->setAutoDefault(false);
    connect(m_save, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.SaveSettings_Click(); }); });
    m_abort = new QPushButton(this);
    m_abort->setObjectName(QStringLiteral("Label1"));
    m_abort->setAutoDefault(false);
    connect(m_abort, &QPushButton::clicked, this,
            [this] { RunHandler([this] { m_form.Label1_Click(); }); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_save);
    buttons->addStretch();
    buttons->addWidget(m_abort);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_scroll, 1);
    layout->addLayout(buttons);

    FitToScreen(this);
    AddRenderer(this, [this] { Render(); });
}

void ChannelSetupWindow::AddRow(QGridLayout* grid, int i) {
    ChannelRow& row = m_form.model().rows[i];
    RowWidgets& w = m_rows[i];
    int column = 0;

    w.number = new QLabel(QString::number(i));
    w.number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(w.number, i, column++);

    w.check = new QCheckBox;
    w.check->setObjectName(IndexedName("CheckEnable", i));
    w.check->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(w.check, &QCheckBox::clicked, this, [this, i, &row](bool on) {
        row.CheckEnable.checked = on;
        RunHandler([this, i] { m_form.CheckEnable_Click(i); });
    });
    grid->addWidget(w.check, i, column++);

    w.name = new ClickableLabel;
    w.name->setObjectName(IndexedName("dataCHANNEL", i));
    w.name->setMinimumWidth(w.name->fontMetrics().horizontalAdvance(QStringLiteral("M")) * 16);
    grid->addWidget(w.name, i, column++);

    if (m_form.HasLimitsAndColours()) {
        w.name->setCursor(Qt::PointingHandCursor);
        connect(w.name, &ClickableLabel::clicked, this,
                [this, i] { RunHandler([this, i] { m_form.dataCHANNEL_Click(i); }); });

        w.limit = new QComboBox;
        w.limit->setObjectName(IndexedName("MAXLimit", i));
        w.limit->setEditable(true);
        w.limit->setInsertPolicy(QComboBox::NoInsert);
        // The choices of a row never change: they are filled once, and a render sets the text.
        for (const std::string& choice : MaxLimitChoices(i)) {
            w.limit->addItem(ToQt(choice));
        }
        connect(w.limit, &QComboBox::currentTextChanged, this,
                [&row](const QString& text) { row.MAXLimit.text = FromQt(text); });
        grid->addWidget(w.limit, i, column++);

        w.colour = new QPushButton;
        w.colour->setObjectName(IndexedName("ChannelColour", i));
        w.colour->setAutoDefault(false);
        connect(w.colour, &QPushButton::clicked, this,
                [this, i] { RunHandler([this, i] { m_form.ChannelColour_Click(i); }); });
        grid->addWidget(w.colour, i, column++);
    }
    if (m_form.HasTagColumn()) {
        w.tag = new ClickableLabel;
        w.tag->setObjectName(IndexedName("XMLcode", i));
        w.tag->setCursor(Qt::PointingHandCursor);
        w.tag->setToolTip(QStringLiteral("Click to change the tag"));
        w.tag->setMinimumWidth(w.tag->fontMetrics().horizontalAdvance(QStringLiteral("M")) * 6);
        connect(w.tag, &ClickableLabel::clicked, this,
                [this, i] { RunHandler([this, i] { m_form.XMLcode_Click(i); }); });
        grid->addWidget(w.tag, i, column++);
    }
}

void ChannelSetupWindow::Load() {
    RunHandler([this] { m_form.Form_Load(); });
    // As large as the offered rows need; FitToScreen keeps it within the screen, and the rows
    // scroll beyond that.
    adjustSize();
}

void ChannelSetupWindow::reject() {
    RunHandler([this] { m_form.TitleBarClose(); });
}

void ChannelSetupWindow::Render() {
    const ChannelSetupModel& m = m_form.model();
    setWindowTitle(ToQt(m.caption));
    for (int i = 1; i <= kChannelCount; ++i) {
        const ChannelRow& row = m.rows[i];
        RowWidgets& w = m_rows[i];
        // A withdrawn row is not shown at all; the row's controls keep their own states.
        const bool shown = row.Frame.visible;
        Show(w.number, shown, true);
        Show(w.check, shown, row.CheckEnable.enabled);
        if (w.check->isChecked() != row.CheckEnable.checked) {
            w.check->setChecked(row.CheckEnable.checked);
        }
        Show(w.name, shown, row.dataCHANNEL.enabled);
        // A long name is cut to its column; the whole name is in its tooltip.
        ShowElidedLabel(w.name, row.dataCHANNEL.text,
                        w.name->fontMetrics().horizontalAdvance(QStringLiteral("M")) * 22,
                        w.nameShown,
                        m_form.HasLimitsAndColours() ? QStringLiteral("Click to rename the channel")
                                                     : QString());
        const int colour =
            row.dataCHANNEL.foreColour == kDefaultColour ? 0xFFFFFF : row.dataCHANNEL.foreColour;
        const QString style = NameStyle(colour, row.dataCHANNEL.enabled);
        if (w.name->styleSheet() != style) {
            w.name->setStyleSheet(style);
        }
        if (w.limit != nullptr) {
            const QString limit = ToQt(row.MAXLimit.text);
            if (w.limit->currentText() != limit) {
                w.limit->blockSignals(true);
                w.limit->setCurrentText(limit);
                w.limit->blockSignals(false);
            }
            Show(w.limit, shown, row.MAXLimit.enabled);
            Show(w.colour, shown, row.ChannelColour.enabled);
            ShowText(w.colour, row.ChannelColour.text);
        }
        if (w.tag != nullptr) {
            Show(w.tag, shown, row.XMLcode.enabled);
            ShowText(w.tag, row.XMLcode.text);
            // A tag that can be clicked looks like a link; an inert one is plain grey.
            const QColor ground = palette().color(QPalette::Window);
            const QString tagStyle =
                row.XMLcode.enabled
                    ? QStringLiteral("color: %1; text-decoration: underline;")
                          .arg(ReadableOn(palette().color(QPalette::Link), ground).name())
                    : QStringLiteral("color: %1;")
                          .arg(Mix(palette().color(QPalette::WindowText), ground, 0.5).name());
            if (w.tag->styleSheet() != tagStyle) {
                w.tag->setStyleSheet(tagStyle);
            }
        }
    }
    ShowButton(m_save, m.SaveSettings);
    ShowButton(m_abort, m.Label1);
    if (m_form.CloseRequested() && isVisible()) {
        accept();
    }
}

}  // namespace brizalog
