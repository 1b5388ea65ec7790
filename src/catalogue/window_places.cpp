#include "catalogue/window_places.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "catalogue/files.h"

namespace fs = std::filesystem;

namespace brizalog {

namespace {

constexpr int kLargestSide = 100000;

// "x,y,w,h": four whole numbers, each possibly negative, nothing else.
std::optional<WindowPlace> ParsePlace(std::string_view text) {
    int values[4];
    const char* at = text.data();
    const char* end = text.data() + text.size();
    for (int i = 0; i < 4; ++i) {
        const auto [next, error] = std::from_chars(at, end, values[i]);
        if (error != std::errc() || (i < 3 && (next == end || *next != ','))) {
            return std::nullopt;
        }
        at = i < 3 ? next + 1 : next;
    }
    if (at != end) {
        return std::nullopt;
    }
    const WindowPlace place{values[0], values[1], values[2], values[3]};
    const auto sane = [](int side) { return side >= 1 && side <= kLargestSide; };
    const auto near = [](int offset) { return offset > -kLargestSide && offset < kLargestSide; };
    if (!sane(place.width) || !sane(place.height) || !near(place.x) || !near(place.y)) {
        return std::nullopt;
    }
    return place;
}

bool IsName(std::string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '(' || c == ')';
    });
}

}  // namespace

WindowPlaces ParseWindowPlaces(std::string_view text) {
    WindowPlaces places;
    while (!text.empty()) {
        const std::size_t lineEnd = text.find('\n');
        std::string_view line = text.substr(0, lineEnd);
        text = lineEnd == std::string_view::npos ? std::string_view() : text.substr(lineEnd + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (line.size() < 2 || line.front() != '<') {
            continue;
        }
        const std::size_t close = line.find('>');
        if (close == std::string_view::npos) {
            continue;
        }
        const std::string_view name = line.substr(1, close - 1);
        const std::string endTag = "</" + std::string(name) + ">";
        if (!IsName(name) || line.size() < close + 1 + endTag.size() ||
            line.substr(line.size() - endTag.size()) != endTag) {
            continue;
        }
        const std::string_view value =
            line.substr(close + 1, line.size() - endTag.size() - close - 1);
        if (const auto place = ParsePlace(value)) {
            places[std::string(name)] = *place;
        }
    }
    return places;
}

std::string WindowPlacesText(const WindowPlaces& places) {
    std::string text;
    for (const auto& [name, p] : places) {
        if (!IsName(name)) {
            continue;
        }
        text += "<" + name + ">" + std::to_string(p.x) + "," + std::to_string(p.y) + "," +
                std::to_string(p.width) + "," + std::to_string(p.height) + "</" + name + ">\r\n";
    }
    return text;
}

WindowPlaces ReadWindowPlaces(const fs::path& folder) {
    const fs::path path = InFolder(folder, kWindowPlacesFile);
    std::error_code error;
    // A folder or a device under the file's name is no file of places.
    if (!fs::is_regular_file(path, error)) {
        return {};
    }
    try {
        return ParseWindowPlaces(ReadWholeFile(path));
    } catch (...) {
        return {};
    }
}

void WriteWindowPlaces(const WindowPlaces& places, const fs::path& folder) {
    WriteWholeFile(InFolder(folder, kWindowPlacesFile), WindowPlacesText(places));
}

WindowPlace FitPlace(WindowPlace wanted, const WindowPlace& screen, int frameWidth,
                     int frameHeight) {
    const int roomWidth = std::max(1, screen.width - frameWidth);
    const int roomHeight = std::max(1, screen.height - frameHeight);
    wanted.width = std::clamp(wanted.width, 1, roomWidth);
    wanted.height = std::clamp(wanted.height, 1, roomHeight);
    // The frame's top left corner stands at (x, y): the title bar comes first into view.
    wanted.x = std::clamp(wanted.x, screen.x, screen.x + screen.width - frameWidth - wanted.width);
    wanted.y =
        std::clamp(wanted.y, screen.y, screen.y + screen.height - frameHeight - wanted.height);
    return wanted;
}

}  // namespace brizalog
