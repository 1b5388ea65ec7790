#pragma once

#include <QScrollArea>
#include <QSize>
#include <filesystem>

class QWidget;

namespace brizalog {

// Windows that fit the screen they open on, at any scale and font size, and open where the user
// left them.

// Where windows.cfg is kept: the program folder, set once at start. Until it is set, windows are
// fitted to their screen but their places are neither read nor kept (tests, the splash). An
// empty path forgets the folder again.
void SetWindowPlacesFolder(const std::filesystem::path& folder);

// The one call a window makes, in its constructor, after setObjectName:
//
//     FitToScreen(this);
//
// When the window is first shown it takes the size and position it had when it was last closed
// (remembered in windows.cfg under its object name), or else its own size (the one it was given
// with resize(), else its size hint), and either is fitted inside the usable area of its screen:
// never larger, never partly off it. Each time it is hidden or closed, its place is remembered.
// `preferred` replaces the window's own size for its first opening. A window whose contents may
// be larger than the screen (at 200 %, with large fonts) puts them in a ScrollingArea, so that
// what no longer fits scrolls instead of being cut.
void FitToScreen(QWidget* window, QSize preferred = QSize());

// `wanted` made no larger than the usable area of the window's screen, less its frame: for a
// window that resizes itself after it has opened (the main window, for a taller layout).
QSize FittedSize(const QWidget* window, QSize wanted);

// A scroll area around `content` whose size hint is the content's whole size: the window that
// holds it opens showing everything when the screen has room, and scrolls when it has not.
class ScrollingArea : public QScrollArea {
public:
    explicit ScrollingArea(QWidget* content, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
};

}  // namespace brizalog
