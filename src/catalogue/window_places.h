#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brizalog {

// Where each window of the desktop stood when it was last closed: windows.cfg of the program
// folder, one "<Window>x,y,width,height</Window>" line each, CR LF, named by the window's own
// name ("Brizalog", "setupHARDWAREchannels", "BATTMonitor"). It is Brizalog's own file, replaced
// whole by the crash-safe write; a missing or damaged file, or a damaged line, only means that
// the window opens where it would have opened the first time.

inline constexpr std::string_view kWindowPlacesFile = "/windows.cfg";

// A rectangle in the screen's pixels (device-independent): a window's place, or a screen's
// usable area.
struct WindowPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const WindowPlace&) const = default;
};

using WindowPlaces = std::map<std::string, WindowPlace, std::less<>>;

// The places of a file's text. A line that is not "<Name>x,y,w,h</Name>" with four whole numbers
// and a width and a height between 1 and 100,000 is skipped.
WindowPlaces ParseWindowPlaces(std::string_view text);
std::string WindowPlacesText(const WindowPlaces& places);

// Reads windows.cfg; never fails (a missing, unreadable or damaged file gives no places).
WindowPlaces ReadWindowPlaces(const std::filesystem::path& folder);
// Replaces windows.cfg whole; failures are the file failures of WriteWholeFile.
void WriteWindowPlaces(const WindowPlaces& places, const std::filesystem::path& folder);

// The place a window takes within `screen`, the usable area of the screen it opens on: no
// larger than the area, and moved inside it as far as it has to be so that its whole frame,
// title bar included, can be seen and reached. `frame` is what the window's frame adds around
// its contents, left and right together and top and bottom together.
WindowPlace FitPlace(WindowPlace wanted, const WindowPlace& screen, int frameWidth = 0,
                     int frameHeight = 0);

}  // namespace brizalog
