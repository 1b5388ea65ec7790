#include "ui/plot_canvas.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QResizeEvent>
#include <algorithm>
#include <cmath>

namespace brizalog {

namespace {

QRgb ToRgb(std::int32_t colour) {
    return qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

// Cuts the segment to `box` (Liang-Barsky); false when nothing of it lies inside. Far-off
// coordinates, such as a Scaled value far over its limit, never reach the rasterizer whole.
bool ClipToBox(QPointF& a, QPointF& b, const QRectF& box) {
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    double t0 = 0;
    double t1 = 1;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {a.x() - box.left(), box.right() - a.x(), a.y() - box.top(),
                         box.bottom() - a.y()};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0) {
                return false;
            }
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0) {
            t0 = std::max(t0, t);
        } else {
            t1 = std::min(t1, t);
        }
        if (t0 > t1) {
            return false;
        }
    }
    const QPointF start = a;
    a = start + QPointF(dx * t0, dy * t0);
    b = start + QPointF(dx * t1, dy * t1);
    return true;
}

}  // namespace

PlotCanvas::PlotCanvas(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    m_image = QImage(QSize(1, 1), QImage::Format_RGB32);
    m_image.fill(ToRgb(m_back));
}

PlotCanvas::~PlotCanvas() = default;

void PlotCanvas::Clear() {
    ++m_clears;
    endPainting();
    m_kept.clear();
    m_kept.shrink_to_fit();
    m_keeping = true;
    m_image.fill(ToRgb(m_back));
    update();
}

void PlotCanvas::SetDrawWidth(int pixels) {
    m_drawWidth = std::clamp(pixels, 1, 1000);
}

void PlotCanvas::Line(double x1, double y1, double x2, double y2, std::int32_t colour) {
    // A scale of 0 has no place for anything: the chart stays empty rather than dividing by it.
    if (m_scaleWidth == 0 || m_scaleHeight == 0) {
        return;
    }
    const KeptLine line{static_cast<float>(x1 / m_scaleWidth),
                        static_cast<float>(y1 / m_scaleHeight),
                        static_cast<float>(x2 / m_scaleWidth),
                        static_cast<float>(y2 / m_scaleHeight),
                        colour,
                        static_cast<std::uint16_t>(m_drawWidth)};
    if (!std::isfinite(line.x1) || !std::isfinite(line.y1) || !std::isfinite(line.x2) ||
        !std::isfinite(line.y2)) {
        return;
    }
    if (m_keeping) {
        if (m_kept.size() < kMaxKeptLines) {
            m_kept.push_back(line);
        } else {
            m_kept.clear();
            m_kept.shrink_to_fit();
            m_keeping = false;
        }
    }
    fitImage();
    draw(line);
    // One repaint for however many lines arrive before the next expose.
    if (!m_updateQueued) {
        m_updateQueued = true;
        update();
    }
}

void PlotCanvas::SetBackColour(std::int32_t colour) {
    const QRgb before = ToRgb(m_back);
    m_back = colour;
    const QRgb after = ToRgb(colour);
    if (before == after) {
        return;
    }
    if (m_keeping) {
        fitImage();
        redrawKept();
    } else {
        // The lines are gone: whatever shows the old background takes the new one.
        endPainting();
        for (int y = 0; y < m_image.height(); ++y) {
            auto* row = reinterpret_cast<QRgb*>(m_image.scanLine(y));
            std::replace(row, row + m_image.width(), before, after);
        }
    }
    update();
}

const QImage& PlotCanvas::image() {
    fitImage();
    endPainting();
    return m_image;
}

void PlotCanvas::draw(const KeptLine& line) {
    const double w = m_image.width();
    const double h = m_image.height();
    const double ratio = m_image.devicePixelRatio();
    QPointF a(line.x1 * w, line.y1 * h);  // device pixels
    QPointF b(line.x2 * w, line.y2 * h);
    if (line.width == 1 && ratio <= 3) {
        // The thin lines of the time charts, up to twelve series of 10,000 records, are set
        // pixel by pixel: far cheaper than a painter's call each. On a screen of 150 % or
        // 200 % scale one pixel of the surface is two of the device.
        if (ClipToBox(a, b, QRectF(0, 0, w - 1, h - 1))) {
            endPainting();
            PlotThinLine(a, b, ToRgb(line.colour), std::max(1, qRound(ratio)));
        }
        return;
    }
    const double margin = (line.width + 2.0) * ratio;
    if (!ClipToBox(a, b, QRectF(-margin, -margin, w + 2 * margin, h + 2 * margin))) {
        return;
    }
    if (!m_painter) {
        m_painter = std::make_unique<QPainter>(&m_image);
        m_painter->setRenderHint(QPainter::Antialiasing, false);
    }
    if (m_pen.color().rgb() != ToRgb(line.colour) || m_pen.width() != line.width) {
        m_pen = QPen(QColor(ToRgb(line.colour)), line.width, Qt::SolidLine, Qt::RoundCap,
                     Qt::RoundJoin);
    }
    if (m_painter->pen() != m_pen) {
        m_painter->setPen(m_pen);
    }
    a /= ratio;
    b /= ratio;
    if (a == b) {
        m_painter->drawPoint(a);
    } else {
        m_painter->drawLine(a, b);
    }
}

void PlotCanvas::PlotThinLine(QPointF from, QPointF to, QRgb colour, int thickness) {
    int x0 = qRound(from.x());
    int y0 = qRound(from.y());
    const int x1 = qRound(to.x());
    const int y1 = qRound(to.y());
    const int dx = std::abs(x1 - x0);
    const int dy = -std::abs(y1 - y0);
    const int sx = x0 < x1 ? 1 : -1;
    const int sy = y0 < y1 ? 1 : -1;
    uchar* bits = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    const int right = m_image.width() - 1;
    const int bottom = m_image.height() - 1;
    const int first = -(thickness - 1) / 2;  // a square of `thickness` pixels around each point
    const int last = first + thickness - 1;
    int error = dx + dy;
    for (;;) {
        if (thickness == 1) {
            reinterpret_cast<QRgb*>(bits + y0 * stride)[x0] = colour;
        } else {
            for (int y = std::max(0, y0 + first); y <= std::min(bottom, y0 + last); ++y) {
                auto* row = reinterpret_cast<QRgb*>(bits + y * stride);
                for (int x = std::max(0, x0 + first); x <= std::min(right, x0 + last); ++x) {
                    row[x] = colour;
                }
            }
        }
        if (x0 == x1 && y0 == y1) {
            break;
        }
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            x0 += sx;
        }
        if (twice <= dx) {
            error += dx;
            y0 += sy;
        }
    }
}

void PlotCanvas::endPainting() {
    m_painter.reset();
}

void PlotCanvas::redrawKept() {
    endPainting();
    m_image.fill(ToRgb(m_back));
    for (const KeptLine& line : m_kept) {
        draw(line);
    }
    endPainting();
}

QPointF PlotCanvas::toScale(QPointF position) const {
    const double w = std::max(1, width());
    const double h = std::max(1, height());
    return {position.x() / w * m_scaleWidth, position.y() / h * m_scaleHeight};
}

void PlotCanvas::paintEvent(QPaintEvent* event) {
    m_updateQueued = false;
    fitImage();
    endPainting();
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawImage(QPointF(0, 0), m_image);
    if (m_overlay) {
        m_overlay(painter);
    }
}

void PlotCanvas::SetOverlay(std::function<void(QPainter&)> overlay) {
    m_overlay = std::move(overlay);
    update();
}

void PlotCanvas::resizeEvent(QResizeEvent* event) {
    fitImage();
    QWidget::resizeEvent(event);
}

void PlotCanvas::fitImage() {
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize().expandedTo(QSize(1, 1));
    if (m_image.size() == pixels) {
        return;
    }
    endPainting();
    if (m_keeping) {
        m_image = QImage(pixels, QImage::Format_RGB32);
        m_image.setDevicePixelRatio(ratio);
        redrawKept();
    } else {
        m_image = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_image.setDevicePixelRatio(ratio);
    }
}

void PlotCanvas::mousePressEvent(QMouseEvent* event) {
    const QPointF at = toScale(event->position());
    emit mousePressed(at.x(), at.y(), event->button());
}

void PlotCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = toScale(event->position());
    emit mouseMoved(at.x(), at.y(), event->buttons());
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent* event) {
    const QPointF at = toScale(event->position());
    emit mouseReleased(at.x(), at.y(), event->button());
}

}  // namespace brizalog
