#include "setup/small_input.h"

#include <string>

namespace brizalog {

const std::array<ColourSwatch, 16> kColourSwatches{{
    {"1", 255},
    {"2", 65535},
    {"3", 8421631},
    {"4", 8438015},
    {"5", 8454143},
    {"6", 8454016},
    {"7", 16777088},
    {"8", 16744576},
    {"A", 65280},
    {"B", 16777152},
    {"C", 12632319},
    {"D", 12640511},
    {"E", 12648384},
    {"F", 16777152},
    {"G", 16761024},
    {"H", 16711935},
}};

namespace {

struct TextWindow {
    std::string_view window;
    std::string_view caption;
    std::string_view save;
};

constexpr TextWindow kTextWindows[] = {
    {"TextInput", "Text Input Window", "SAVE Custom channel NAME"},
    {"XMLcodeINPUT", "XML coding change window", "click to SAVE XML code"},
};

constexpr std::string_view kColourChart = "ColourCHART";
constexpr std::string_view kCancel = "CANCEL  no change";

const TextWindow* FindTextWindow(std::string_view window) {
    for (const TextWindow& text : kTextWindows) {
        if (text.window == window) {
            return &text;
        }
    }
    return nullptr;
}

}  // namespace

bool SmallInput::IsSmallInput(std::string_view window) {
    return window == kColourChart || FindTextWindow(window) != nullptr;
}

SmallInput::SmallInput(std::string_view window, SharedState& state)
    : m_state(state), m_colourChart(window == kColourChart), m_lastLabel(m_colourChart ? 17 : 2) {
    if (m_colourChart) {
        m_model.caption = "LINE Colour Setting chart";
        for (int i = 1; i <= 16; ++i) {
            const ColourSwatch& swatch = kColourSwatches[static_cast<std::size_t>(i - 1)];
            m_model.Label[i].text = std::string(swatch.caption);
            m_model.Label[i].colour = swatch.colour;
        }
    } else {
        const TextWindow* text = FindTextWindow(window);
        m_model.caption = std::string(text != nullptr ? text->caption : "");
        m_model.Label[1].text = std::string(text != nullptr ? text->save : "");
        m_model.controls.Add("Text1", m_model.Text1);
    }
    m_model.Label[m_lastLabel].text = std::string(kCancel);
    for (int i = 1; i <= m_lastLabel; ++i) {
        m_model.controls.Add("Label" + std::to_string(i), m_model.Label[i]);
    }
}

void SmallInput::Form_Load() {
    if (!m_colourChart) {
        m_model.Text1.text = m_state.EditText;
    }
}

void SmallInput::Label_Click(int index) {
    if (index < 1 || index > m_lastLabel) {
        return;
    }
    if (index == m_lastLabel) {
        m_closeRequested = true;
        return;
    }
    if (m_colourChart) {
        m_state.EditColour = m_model.Label[index].colour;
    } else {
        m_state.EditText = m_model.Text1.text;
    }
    m_closeRequested = true;
}

bool SmallInput::Click(std::string_view name) {
    for (int i = 1; i <= m_lastLabel; ++i) {
        if (name == "Label" + std::to_string(i)) {
            Label_Click(i);
            return true;
        }
    }
    return false;
}

bool SmallInput::SetText(std::string_view name, std::string_view text) {
    if (m_colourChart || name != "Text1") {
        return false;
    }
    Text1_Change(text);
    return true;
}

}  // namespace brizalog
