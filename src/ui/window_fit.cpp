#include "ui/window_fit.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QWidget>
#include <optional>

#include "catalogue/window_places.h"
#include "ui/qt_text.h"

namespace brizalog {

namespace {

std::optional<std::filesystem::path> g_folder;
std::optional<WindowPlaces> g_places;  // read once, on the first window that asks

WindowPlaces& Places() {
    if (!g_places) {
        g_places = g_folder ? ReadWindowPlaces(*g_folder) : WindowPlaces();
    }
    return *g_places;
}

WindowPlace ToPlace(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

QScreen* ScreenOf(const QWidget* window, std::optional<QPoint> at = std::nullopt) {
    if (at) {
        if (QScreen* screen = QGuiApplication::screenAt(*at)) {
            return screen;
        }
    }
    if (window->parentWidget() != nullptr && window->parentWidget()->window()->isVisible()) {
        return window->parentWidget()->window()->screen();
    }
    return window->screen() != nullptr ? window->screen() : QGuiApplication::primaryScreen();
}

// What the window manager's frame adds around a window's contents. Before the window is first
// mapped the frame is not known yet: a title bar is assumed then.
QSize FrameOf(const QWidget* window) {
    const QSize frame = window->frameGeometry().size() - window->geometry().size();
    if (frame.width() > 0 || frame.height() > 0) {
        return frame;
    }
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    return {8, title + 8};
}

// Fits its window to the screen at its first showing and keeps its place at each hiding.
class PlaceKeeper : public QObject {
public:
    PlaceKeeper(QWidget* window, QSize preferred)
        : QObject(window), m_window(window), m_preferred(preferred) {
        window->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == m_window) {
            if (event->type() == QEvent::Show && !m_placed) {
                m_placed = true;
                Place();
            } else if ((event->type() == QEvent::Hide || event->type() == QEvent::Close) &&
                       m_placed) {
                Keep();
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QString Name() const { return m_window->objectName(); }

    void Place() {
        const auto saved = Places().find(FromQt(Name()));
        const bool remembered = !Name().isEmpty() && saved != Places().end();
        QSize size;
        QPoint position = m_window->pos();
        if (remembered) {
            size = QSize(saved->second.width, saved->second.height);
            position = QPoint(saved->second.x, saved->second.y);
        } else if (m_preferred.isValid()) {
            size = m_preferred;
        } else if (m_window->testAttribute(Qt::WA_Resized)) {
            size = m_window->size();
        } else {
            size = m_window->sizeHint();
        }
        size = size.expandedTo(m_window->minimumSize()).boundedTo(m_window->maximumSize());
        const QSize frame = FrameOf(m_window);
        QScreen* screen = ScreenOf(m_window, remembered ? std::optional(position) : std::nullopt);
        const QRect area = screen->availableGeometry();
        const QWidget* parent = m_window->parentWidget();
        const bool overParent = parent != nullptr && parent->window()->isVisible();
        if (!remembered && overParent) {
            // Centred over its parent, as a dialog opens.
            position =
                parent->window()->frameGeometry().center() -
                QPoint((size.width() + frame.width()) / 2, (size.height() + frame.height()) / 2);
        } else if (!remembered && !m_window->testAttribute(Qt::WA_Moved)) {
            // A window of its own (the main window, a monitor) opening for the first time is
            // placed by the window manager, beside the others rather than on top of them.
            const WindowPlace fitted = FitPlace({area.x(), area.y(), size.width(), size.height()},
                                                ToPlace(area), frame.width(), frame.height());
            m_window->resize(fitted.width, fitted.height);
            return;
        }
        const WindowPlace fitted =
            FitPlace({position.x(), position.y(), size.width(), size.height()}, ToPlace(area),
                     frame.width(), frame.height());
        m_window->resize(fitted.width, fitted.height);
        m_window->move(fitted.x, fitted.y);
    }

    void Keep() {
        if (!g_folder || Name().isEmpty() || m_window->isMaximized() || m_window->isFullScreen()) {
            return;
        }
        const WindowPlace place{m_window->x(), m_window->y(), m_window->width(),
                                m_window->height()};
        WindowPlaces& places = Places();
        const auto it = places.find(FromQt(Name()));
        if (it != places.end() && it->second == place) {
            return;
        }
        places[FromQt(Name())] = place;
        try {
            WriteWindowPlaces(places, *g_folder);
        } catch (...) {
            // A folder that cannot be written only means the window opens at its default place
            // next time; nothing the user is doing is disturbed.
        }
    }

    QWidget* m_window;
    QSize m_preferred;
    bool m_placed = false;
};

}  // namespace

void SetWindowPlacesFolder(const std::filesystem::path& folder) {
    g_folder = folder.empty() ? std::nullopt : std::optional(folder);
    g_places.reset();
}

void FitToScreen(QWidget* window, QSize preferred) {
    new PlaceKeeper(window, preferred);
}

QSize FittedSize(const QWidget* window, QSize wanted) {
    const QRect area =
        ScreenOf(window,
                 window->isVisible() ? std::optional(window->geometry().center()) : std::nullopt)
            ->availableGeometry();
    const QSize frame = FrameOf(window);
    return wanted.boundedTo(area.size() - frame).expandedTo(QSize(1, 1));
}

ScrollingArea::ScrollingArea(QWidget* content, QWidget* parent) : QScrollArea(parent) {
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
}

QSize ScrollingArea::sizeHint() const {
    if (widget() == nullptr) {
        return QScrollArea::sizeHint();
    }
    // Room for a vertical scroll bar too: when the screen is too short for the contents, the bar
    // takes its width from the contents' and would otherwise bring a horizontal bar along.
    const int frame = 2 * frameWidth();
    const int bar = verticalScrollBar()->sizeHint().width();
    return widget()->sizeHint().expandedTo(widget()->minimumSizeHint()) + QSize(frame + bar, frame);
}

QSize ScrollingArea::minimumSizeHint() const {
    // Room for a corner of the contents and both scroll bars: whatever is larger scrolls.
    const int bar = verticalScrollBar()->sizeHint().width();
    return {bar * 4, bar * 3};
}

}  // namespace brizalog
