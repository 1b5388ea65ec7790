#pragma once

#include <QObject>
#include <functional>
#include <string>

namespace brizalog {

// Every event of the desktop program reaches the core through RunHandler: a serial arrival, a
// timer tick, a click or a key. The handler runs to its end on the window thread; afterwards
// every open window renders its model again, so what the user sees follows each handler.
//
// A Failure that escapes a handler is one that the system lets end the process: its message is
// shown, and the application leaves every event loop with the exit status 1.
void RunHandler(const std::function<void()>& handler);

// The same for events that no person is waiting on, the serial arrivals and the timers' ticks,
// which together may come far faster than a screen can show them: the handler runs at once,
// every time, so the model follows every frame and tick, while the windows render at the pace
// of a reading eye, at most 20 times a second. A render put off is never lost: it follows
// within that spacing of the last event, or at once with the next RunHandler (a click, a key)
// or FlushRenders.
void RunHandlerAtScreenPace(const std::function<void()>& handler);

// Renders now whatever RunHandlerAtScreenPace has put off; for tests that look at a window
// right after a frame.
void FlushRenders();

// The shortest spacing of two renders after paced events, in milliseconds. Faster than a person
// reads a changing number, and at 1,000 frames a second the panel's painting stays a few
// hundredths of a core.
inline constexpr int kRenderSpacingMs = 50;

// Adds `render` to what runs after each handler, for as long as `owner` lives.
void AddRenderer(QObject* owner, std::function<void()> render);

// True once a failure has ended the application; no further event is let through.
bool ApplicationEnding();

// How a failure that ends the process is told before the application exits with status 1: a
// message box by default; a program without windows sets its own (a line on standard error).
void SetFailureTeller(std::function<void(const std::string& message)> tell);

}  // namespace brizalog
