#include "ui/stale_shade.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <vector>

namespace brizalog {

namespace {

std::vector<StaleShade*>& Shades() {
    static std::vector<StaleShade*> shades;
    return shades;
}

QString& Note() {
    static QString note;
    return note;
}

}  // namespace

void SetStaleNote(const QString& note) {
    if (note == Note()) {
        return;
    }
    Note() = note;
    for (StaleShade* shade : Shades()) {
        shade->ShowNote(note);
    }
}

const QString& StaleNote() {
    return Note();
}

StaleShade::StaleShade(QWidget* target) : QWidget(target), m_target(target) {
    setObjectName(QStringLiteral("staleShade"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    target->installEventFilter(this);
    Shades().push_back(this);
    hide();
    ShowNote(Note());
}

StaleShade::~StaleShade() {
    auto& shades = Shades();
    shades.erase(std::remove(shades.begin(), shades.end(), this), shades.end());
}

void StaleShade::ShowNote(const QString& note) {
    m_note = note;
    if (note.isEmpty()) {
        hide();
        return;
    }
    setGeometry(m_target->rect());
    raise();
    show();
    update();
}

bool StaleShade::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_target && event->type() == QEvent::Resize && isVisible()) {
        setGeometry(m_target->rect());
    }
    // A child added to the target later (a reading's label) must not stand above the shade.
    if (watched == m_target && event->type() == QEvent::ChildAdded && isVisible()) {
        raise();
    }
    return QWidget::eventFilter(watched, event);
}

void StaleShade::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // The figures underneath show through at about a third of their strength.
    QColor wash = palette().color(QPalette::Window);
    wash.setAlpha(170);
    painter.fillRect(rect(), wash);

    QFont small = font();
    small.setPointSizeF(std::max(7.0, small.pointSizeF() * 0.9));
    painter.setFont(small);
    const QFontMetrics metrics(small);
    const int pad = metrics.height() / 3;
    QRect box(0, 0, metrics.horizontalAdvance(m_note) + 2 * pad, metrics.height() + pad);
    box.moveTopRight(rect().topRight() + QPoint(-pad, pad));
    QPainterPath path;
    path.addRoundedRect(box, pad, pad);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, palette().color(QPalette::ToolTipBase));
    painter.setPen(palette().color(QPalette::ToolTipText));
    painter.drawText(box, Qt::AlignCenter, m_note);
}

}  // namespace brizalog
