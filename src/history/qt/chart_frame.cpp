#include "history/qt/chart_frame.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

#include "history/qt/scale_painter.h"
#include "ui/control_view.h"
#include "ui/plot_canvas.h"

namespace brizalog {

namespace {

const QColor kGridColour(255, 255, 255, 56);
const QColor kCrosshairColour(255, 255, 255, 170);

}  // namespace

ChartFrame::ChartFrame(PlotCanvas* canvas, QWidget* parent) : QWidget(parent), m_canvas(canvas) {
    m_canvas->setParent(this);
    m_canvas->SetOverlay([this](QPainter& painter) { PaintOver(painter); });
    Place();
}

void ChartFrame::SetScalesShown(bool shown) {
    if (m_shown == shown) {
        return;
    }
    m_shown = shown;
    if (!shown) {
        m_at.reset();
    }
    Place();
    update();
    m_canvas->update();
}

void ChartFrame::SetScales(ChartScales scales) {
    m_scales = std::move(scales);
    Place();
    update();
    m_canvas->update();
}

QRect ChartFrame::LabelRect() const {
    if (!m_at || m_label.isEmpty()) {
        return {};
    }
    const QFontMetrics metrics(font());
    const int width = metrics.horizontalAdvance(m_label) + 8;
    const int x = m_canvas->x() + static_cast<int>(m_at->x());
    const int left = std::clamp(x - width / 2, 0, std::max(0, this->width() - width));
    return {left, 0, width, m_margins.top()};
}

QRect ChartFrame::CrosshairStrips() const {
    if (!m_at) {
        return {};
    }
    const int x = static_cast<int>(m_at->x());
    return QRect(x - 1, 0, 3, m_canvas->height());
}

void ChartFrame::SetCrosshair(std::optional<QPointF> at, bool cross, const QString& label) {
    if (!m_shown) {
        at.reset();
    }
    if (at == m_at && cross == m_cross && label == m_label) {
        return;
    }
    // Only the strips of the old and the new lines and labels are painted again.
    const QRect oldLabel = LabelRect();
    const QRect oldStrip = CrosshairStrips();
    const std::optional<QPointF> oldAt = m_at;
    const bool oldCross = m_cross;
    m_at = at;
    m_cross = cross;
    m_label = label;
    update(oldLabel);
    update(LabelRect());
    m_canvas->update(oldStrip);
    m_canvas->update(CrosshairStrips());
    if (oldCross && oldAt) {
        m_canvas->update(QRect(0, static_cast<int>(oldAt->y()) - 1, m_canvas->width(), 3));
    }
    if (m_cross && m_at) {
        m_canvas->update(QRect(0, static_cast<int>(m_at->y()) - 1, m_canvas->width(), 3));
    }
}

void ChartFrame::PaintOver(QPainter& painter) {
    if (!m_shown) {
        return;
    }
    const QRectF chart(0, 0, m_canvas->width(), m_canvas->height());
    PaintGrid(painter, chart, m_scales, kGridColour);
    if (m_at) {
        painter.setPen(QPen(kCrosshairColour, 0));
        const double x = std::round(m_at->x());
        painter.drawLine(QPointF(x, 0), QPointF(x, chart.bottom()));
        if (m_cross) {
            const double y = std::round(m_at->y());
            painter.drawLine(QPointF(0, y), QPointF(chart.right(), y));
        }
    }
}

void ChartFrame::Place() {
    m_margins = m_shown ? ScaleMargins(m_scales, font()) : QMargins();
    const QRect inside = rect().marginsRemoved(m_margins);
    if (m_canvas->geometry() != inside) {
        m_canvas->setGeometry(inside);
    }
}

void ChartFrame::paintEvent(QPaintEvent* event) {
    if (!m_shown) {
        return;
    }
    QPainter painter(this);
    painter.setClipRegion(event->region());
    const ScaleLook look{font(), palette().color(QPalette::WindowText),
                         palette().color(QPalette::Window), kGridColour};
    PaintScales(painter, QRectF(m_canvas->geometry()), m_scales, look);
    const QRect label = LabelRect();
    if (!label.isEmpty()) {
        painter.fillRect(label, palette().color(QPalette::Window));
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(label, Qt::AlignCenter, m_label);
    }
}

void ChartFrame::resizeEvent(QResizeEvent* event) {
    Place();
    QWidget::resizeEvent(event);
}

void ChartFrame::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        Place();
    }
    QWidget::changeEvent(event);
}

QSize ChartFrame::sizeHint() const {
    const QMargins margins = ScaleMargins(m_scales, font());
    return m_canvas->sizeHint().grownBy(margins);
}

QSize ChartFrame::minimumSizeHint() const {
    return m_canvas->minimumSizeHint().grownBy(m_shown ? m_margins : QMargins());
}

}  // namespace brizalog
