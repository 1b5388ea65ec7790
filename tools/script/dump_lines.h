#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"
#include "window_driver.h"

namespace brizalog::script {

// Collects "NAME=VALUE" lines and prints those that the filter selects: a word selects an item
// by its own name ("LogDelay", "Amps(2)") or a whole array or control group ("RawValue",
// "Amps"), with every property line that follows the name.
class DumpLines {
public:
    DumpLines(Printer& printer, const std::vector<std::string_view>& filter)
        : m_printer(printer), m_filter(filter), m_used(filter.size(), false) {}

    void Number(std::string_view name, double value) {
        if (Selected(name)) {
            m_printer.Number(name, value);
        }
    }
    void Flag(std::string_view name, bool value) {
        if (Selected(name)) {
            m_printer.Flag(name, value);
        }
    }
    void Text(std::string_view name, std::string_view value) {
        if (Selected(name)) {
            m_printer.Value(name, value);
        }
    }
    template <typename Array>
    void Numbers(std::string_view name, const Array& array) {
        for (int i = Array::kLow; i <= Array::kHigh; ++i) {
            Number(std::string(name) + "[" + std::to_string(i) + "]", array[i]);
        }
    }
    // A control's text and states, as every window's dump prints them.
    void Control(const std::string& name, const brizalog::Control& control) {
        Text(name, control.text);
        Flag(name + ".visible", control.visible);
        Flag(name + ".enabled", control.enabled);
        Flag(name + ".checked", control.checked);
        Number(name + ".colour", control.colour);
        Number(name + ".forecolour", control.foreColour);
    }
    void Controls(const ControlRegistry& controls) {
        for (const auto& [name, control] : controls.items()) {
            Control(name, *control);
        }
    }
    // The first word that selected nothing, or empty when every word selected something.
    std::string_view Unused() const {
        for (std::size_t i = 0; i < m_filter.size(); ++i) {
            if (!m_used[i]) {
                return m_filter[i];
            }
        }
        return {};
    }

private:
    bool Selected(std::string_view name) {
        if (m_filter.empty()) {
            return true;
        }
        bool selected = false;
        for (std::size_t i = 0; i < m_filter.size(); ++i) {
            const std::string_view word = m_filter[i];
            if (name.substr(0, word.size()) != word) {
                continue;
            }
            if (name.size() == word.size() || name[word.size()] == '[' ||
                name[word.size()] == '(' || name[word.size()] == '.') {
                m_used[i] = true;
                selected = true;
            }
        }
        return selected;
    }

    Printer& m_printer;
    const std::vector<std::string_view>& m_filter;
    std::vector<bool> m_used;
};

// Prints the items of a window's dump, given as (NAME, VALUE) pairs in their order, that the
// words `names` select as DumpLines does; all of them when there are no words. A word that
// selects nothing is a mistake in the script.
template <typename Items>
void PrintSelected(std::string_view window, const Items& items,
                   const std::vector<std::string_view>& names, RunContext& run) {
    DumpLines out(run.printer, names);
    for (const auto& [name, value] : items) {
        out.Text(name, value);
    }
    const std::string_view unused = out.Unused();
    if (!unused.empty()) {
        throw ScriptError("dump: window " + std::string(window) + " has nothing called \"" +
                          std::string(unused) + "\"");
    }
}

}  // namespace brizalog::script
