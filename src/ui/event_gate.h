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

// Adds `render` to what runs after each handler, for as long as `owner` lives.
void AddRenderer(QObject* owner, std::function<void()> render);

// True once a failure has ended the application; no further event is let through.
bool ApplicationEnding();

// How a failure that ends the process is told before the application exits with status 1: a
// message box by default; a program without windows sets its own (a line on standard error).
void SetFailureTeller(std::function<void(const std::string& message)> tell);

}  // namespace brizalog
