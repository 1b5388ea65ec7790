#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace brizalog {

// Colours are decimal numbers, blue × 65536 + green × 256 + red: 255 is red, 65280 green.
inline constexpr int kRed = 255;
inline constexpr int kGreen = 65280;
inline constexpr int kDefaultColour = -1;  // the platform's own colour

// What the system's rules touch of a control: a label, text box, check box, group, menu entry.
// The window layer renders it and forwards events; it holds no rule of its own.
struct Control {
    std::string text;  // caption or text
    bool visible = true;
    bool enabled = true;              // for a text box: editable
    bool checked = false;             // menu check mark, check box value 1, chosen option
    int colour = kDefaultColour;      // background
    int foreColour = kDefaultColour;  // text
    int top = 0;                      // groups: position from the top of the panel, twips
    int height = 0;                   // panels and groups, twips, where the rules set it
};

// Controls of one form by their own names, as "Label15", "Amps(2)", "setsystem(8)", in the order
// in which they were added: for the window layer, the scenario runner's dump and the tests.
class ControlRegistry {
public:
    void Add(std::string name, Control& control) {
        // A second control under a name already taken keeps the first one findable.
        m_index.try_emplace(name, &control);
        m_items.emplace_back(std::move(name), &control);
    }
    template <std::size_t N>
    void AddArray(const std::string& name, Control (&controls)[N]) {
        for (std::size_t i = 0; i < N; ++i) {
            Add(name + "(" + std::to_string(i) + ")", controls[i]);
        }
    }
    // The windows look their controls up by name at every event and every drawing: by hash.
    Control* Find(std::string_view name) const {
        const auto found = m_index.find(name);
        return found == m_index.end() ? nullptr : found->second;
    }
    const std::vector<std::pair<std::string, Control*>>& items() const { return m_items; }

private:
    // Heterogeneous lookup: a name given as a string_view makes no string of its own.
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const {
            return std::hash<std::string_view>{}(name);
        }
    };
    std::vector<std::pair<std::string, Control*>> m_items;
    std::unordered_map<std::string, Control*, NameHash, std::equal_to<>> m_index;
};

}  // namespace brizalog
