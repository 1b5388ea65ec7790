#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <string_view>

#include "catalogue/control.h"
#include "catalogue/options.h"
#include "catalogue/services.h"

namespace brizalog {

// The window `Options`: Brizalog's own choices of options.cfg, one control per row of
// OptionRows(), named by the row's tag. A Flag row's control is a check box (`checked`), every
// other kind a text box (`text`); the caption beside it is the row's. OK writes the file and
// closes, Cancel closes without writing.
struct OptionsFormModel {
    OptionsFormModel();
    OptionsFormModel(const OptionsFormModel&) = delete;
    OptionsFormModel& operator=(const OptionsFormModel&) = delete;

    std::string caption = "Options";
    std::deque<Control> rows;  // in the order of OptionRows(); a deque keeps them in place
    Control OK;
    Control Cancel;
    ControlRegistry controls;  // the rows by tag, then "OK" and "Cancel"

    Control* Row(std::string_view tag) const { return controls.Find(tag); }
};

class OptionsForm {
public:
    static constexpr std::string_view kWindow = "Options";

    OptionsForm(std::filesystem::path folder, Dialogs& dialogs);
    OptionsForm(const OptionsForm&) = delete;
    OptionsForm& operator=(const OptionsForm&) = delete;

    // Reads options.cfg afresh: the file is the truth, whatever the program holds in memory.
    void Form_Load();
    // Writes every row's value into options.cfg, keeping the tags of no row as the file had
    // them, and closes. A file that cannot be written is told, and the window stays open with
    // what the user typed.
    void OK_Click();
    void Cancel_Click() { m_closeRequested = true; }
    // Closing by the title bar, or Escape, is the cancel.
    void TitleBarClose() { Cancel_Click(); }

    // A click by the control's own name: a check box changes its state; "OK" and "Cancel". False
    // when the window has no such control.
    bool Click(std::string_view name);
    // The user types into a text box, or sets a check box to "0" or "1". False when the window
    // has no such box or a check box is given another value.
    bool SetText(std::string_view name, std::string_view text);

    // The choices as the controls hold them now.
    Options Edited() const;

    bool CloseRequested() const { return m_closeRequested; }
    OptionsFormModel& model() { return m_model; }
    const OptionsFormModel& model() const { return m_model; }

private:
    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    Options m_loaded;  // what the file held at the load, tags of no row included
    OptionsFormModel m_model;
    bool m_closeRequested = false;
};

}  // namespace brizalog
