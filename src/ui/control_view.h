#pragma once

#include <QAbstractButton>
#include <QColor>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QResizeEvent>
#include <string>
#include <vector>

#include "catalogue/control.h"
#include "ui/qt_text.h"

namespace brizalog {

// How the windows show a Control of a core model: texts, visibility, enabled state, check marks
// and colours. Each setter changes the widget only when the model has changed, so rendering after
// every event costs next to nothing and never disturbs what the user is typing.

// A colour of the system (blue × 65536 + green × 256 + red) as Qt's colour.
inline QColor ToQColor(int colour) {
    return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

// The name of the control `base` of row `i`, as "Amps(3)".
inline QString IndexedName(const char* base, int i) {
    return QStringLiteral("%1(%2)").arg(QString::fromLatin1(base)).arg(i);
}

// Any widget with a text (label, button, action): the text is set only when it differs.
template <typename Widget>
void ShowText(Widget* widget, const std::string& text) {
    if (!ShowsText(widget->text(), text)) {
        widget->setText(ToQt(text));
    }
}

inline void ShowState(QWidget* widget, const Control& control) {
    if (widget->isVisibleTo(widget->parentWidget()) != control.visible) {
        widget->setVisible(control.visible);
    }
    if (widget->isEnabled() != control.enabled) {
        widget->setEnabled(control.enabled);
    }
}

inline void ShowColours(QWidget* widget, const Control& control) {
    QString style;
    if (control.colour != kDefaultColour) {
        style += QStringLiteral("background-color: %1;").arg(ToQColor(control.colour).name());
    }
    if (control.foreColour != kDefaultColour) {
        style += QStringLiteral("color: %1;").arg(ToQColor(control.foreColour).name());
    }
    if (widget->styleSheet() != style) {
        widget->setStyleSheet(style);
    }
}

inline void ShowLabel(QLabel* label, const Control& control) {
    ShowText(label, control.text);
    ShowState(label, control);
    ShowColours(label, control);
}

// A name that may be longer than its place (a channel's name in a form or a panel group): cut to
// `width` pixels with an ellipsis, the whole name in the tooltip, with `hint` under it. `shown`
// keeps the text last shown, so a render of an unchanged name costs a comparison.
template <typename Widget, typename SetText>
void ShowElided(Widget* widget, const std::string& text, int width, std::string& shown,
                const QString& hint, SetText setText) {
    if (shown == text && !shown.empty()) {
        return;
    }
    shown = text;
    const QString whole = ToQt(text);
    const QString cut = widget->fontMetrics().elidedText(whole, Qt::ElideRight, width);
    setText(cut);
    const QString tip = cut == whole     ? hint
                        : hint.isEmpty() ? whole
                                         : whole + QLatin1Char('\n') + hint;
    widget->setToolTip(tip);
}

inline void ShowElidedLabel(QLabel* label, const std::string& text, int width, std::string& shown,
                            const QString& hint = QString()) {
    ShowElided(label, text, width, shown, hint, [label](const QString& t) { label->setText(t); });
}

inline void ShowElidedTitle(QGroupBox* group, const std::string& text, int width,
                            std::string& shown) {
    ShowElided(group, text, width, shown, QString(),
               [group](const QString& t) { group->setTitle(t); });
}

inline void ShowGroup(QGroupBox* group, const Control& control) {
    if (!ShowsText(group->title(), control.text)) {
        group->setTitle(ToQt(control.text));
    }
    ShowState(group, control);
}

inline void ShowButton(QAbstractButton* button, const Control& control) {
    ShowText(button, control.text);
    if (button->isCheckable() && button->isChecked() != control.checked) {
        button->setChecked(control.checked);
    }
    ShowState(button, control);
}

// A text box: editable when the control is enabled. The text is put back only when the model
// holds another text than the box, so typing is never overwritten by a render.
inline void ShowTextBox(QLineEdit* box, const Control& control) {
    ShowText(box, control.text);
    if (box->isReadOnly() == control.enabled) {
        box->setReadOnly(!control.enabled);
    }
    if (box->isVisibleTo(box->parentWidget()) != control.visible) {
        box->setVisible(control.visible);
    }
}

// A list with free text: the box shows the control's text, with `items` to choose from.
inline void ShowList(QComboBox* box, const Control& control,
                     const std::vector<std::string>& items) {
    QStringList wanted;
    for (const std::string& item : items) {
        wanted << ToQt(item);
    }
    QStringList shown;
    for (int i = 0; i < box->count(); ++i) {
        shown << box->itemText(i);
    }
    const QString text = ToQt(control.text);
    if (shown != wanted) {
        box->blockSignals(true);
        box->clear();
        box->addItems(wanted);
        box->setCurrentText(text);
        box->blockSignals(false);
    }
    if (box->currentText() != text) {
        box->blockSignals(true);
        box->setCurrentText(text);
        box->blockSignals(false);
    }
    ShowState(box, control);
}

// A label that the user can click, as the cells of the main panel are. It is reached with Tab
// like a button, clicked with Space or Enter, and shows a frame in the palette's highlight
// while it has the focus.
class ClickableLabel : public QLabel {
    Q_OBJECT

public:
    explicit ClickableLabel(QWidget* parent = nullptr) : QLabel(parent) {
        setFocusPolicy(Qt::StrongFocus);
    }

signals:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
            emit clicked();
        }
        QLabel::mouseReleaseEvent(event);
    }
    void keyPressEvent(QKeyEvent* event) override {
        const int key = event->key();
        if ((key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) &&
            event->modifiers() == Qt::NoModifier) {
            emit clicked();
            return;
        }
        QLabel::keyPressEvent(event);
    }
    void paintEvent(QPaintEvent* event) override {
        QLabel::paintEvent(event);
        if (hasFocus()) {
            QPainter painter(this);
            painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
            painter.drawRect(rect().adjusted(1, 1, -1, -1));
        }
    }
};

// A small square that lights in its control's colour while the control is shown, as the
// indicators of a frame and of a logging interval do. Dark, it keeps its place and paints
// nothing: an indicator that flashes at every frame repaints its own square only, where hiding a
// widget would lay its whole window out again each time.
class Lamp : public QWidget {
public:
    explicit Lamp(QWidget* parent, int side = 14) : QWidget(parent) { setFixedSize(side, side); }

    void Show(const Control& control) {
        const QColor colour = control.visible ? ToQColor(control.colour) : QColor();
        if (colour != m_colour) {
            m_colour = colour;
            update();
        }
    }
    bool lit() const { return m_colour.isValid(); }
    QColor colour() const { return m_colour; }

protected:
    void paintEvent(QPaintEvent*) override {
        if (m_colour.isValid()) {
            QPainter(this).fillRect(rect(), m_colour);
        }
    }

private:
    QColor m_colour;
};

// Holds one label that shows a reading many times a second, outside any layout. A label asks
// for a new layout of its whole window at every change of its text; on a busy panel that costs
// more than all the rest of a render together. In a holder the request stops here: the label is
// repainted alone, and the window is laid out again only when a new text no longer fits.
class LabelHolder : public QWidget {
public:
    LabelHolder(QLabel* label, QWidget* parent) : QWidget(parent), m_label(label) {
        m_label->setParent(this);
        m_label->installEventFilter(this);
        setSizePolicy(m_label->sizePolicy());
    }
    QSize sizeHint() const override { return m_label->sizeHint(); }
    QSize minimumSizeHint() const override { return m_label->minimumSizeHint(); }

protected:
    void resizeEvent(QResizeEvent* event) override {
        m_label->setGeometry(QRect(QPoint(0, 0), event->size()));
    }
    bool event(QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest) {
            // The label's new text: only one wider or taller than the place it has moves the
            // rest of the window.
            const QSize wanted = m_label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored
                                     ? QSize(0, m_label->sizeHint().height())
                                     : m_label->sizeHint();
            if (wanted.width() > width() || wanted.height() > height()) {
                updateGeometry();
            }
            return true;
        }
        return QWidget::event(event);
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        // The label's visibility is the holder's, so that a hidden reading takes no room.
        if (watched == m_label &&
            (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)) {
            setVisible(event->type() == QEvent::ShowToParent);
        }
        return QWidget::eventFilter(watched, event);
    }

private:
    QLabel* m_label;
};

}  // namespace brizalog
