#pragma once

#include <array>
#include <string>
#include <string_view>

#include "catalogue/control.h"
#include "catalogue/state.h"

namespace brizalog {

// One swatch of the chart `ColourCHART`: its caption and the colour it hands back.
struct ColourSwatch {
    std::string_view caption;
    int colour;  // blue × 65536 + green × 256 + red
};

// Label1 to Label16 of the chart, in order. B and F carry the same colour: that is the chart.
extern const std::array<ColourSwatch, 16> kColourSwatches;

// The small modal windows of the channel forms: `TextInput` (a channel name), `XMLcodeINPUT` (a
// frame tag) and `ColourCHART` (a line colour). The caller puts the value into EditText or
// EditColour of the shared state, opens the window, and reads the value back when it has closed,
// whichever way it closed: a cancel leaves the value as it was. Nothing typed is checked.
struct SmallInputModel {
    SmallInputModel() = default;
    SmallInputModel(const SmallInputModel&) = delete;
    SmallInputModel& operator=(const SmallInputModel&) = delete;

    std::string caption;
    Control Text1;  // the two text windows: the value being edited
    // The text windows: Label1 saves, Label2 cancels. The chart: Label1 to Label16 are the
    // swatches, Label17 cancels. Element 0 is not used.
    Control Label[18];
    ControlRegistry controls;
};

class SmallInput {
public:
    // `window` is one of the three names; see IsSmallInput.
    SmallInput(std::string_view window, SharedState& state);
    SmallInput(const SmallInput&) = delete;
    SmallInput& operator=(const SmallInput&) = delete;

    static bool IsSmallInput(std::string_view window);

    // The text windows show EditText; the chart shows its swatches.
    void Form_Load();
    // Label1 .. Label17 by number: a save, a swatch or the cancel.
    void Label_Click(int index);
    // The user types into Text1.
    void Text1_Change(std::string_view text) { m_model.Text1.text = std::string(text); }
    // Closing by the title bar is the cancel.
    void TitleBarClose() { Label_Click(m_lastLabel); }

    // By the control's own name ("Label3", "Text1"); false when the window has no such control.
    bool Click(std::string_view name);
    bool SetText(std::string_view name, std::string_view text);

    bool IsColourChart() const { return m_colourChart; }
    bool CloseRequested() const { return m_closeRequested; }
    SmallInputModel& model() { return m_model; }
    const SmallInputModel& model() const { return m_model; }

private:
    SharedState& m_state;
    bool m_colourChart;
    int m_lastLabel;  // 2 in the text windows, 17 in the chart
    SmallInputModel m_model;
    bool m_closeRequested = false;
};

}  // namespace brizalog
