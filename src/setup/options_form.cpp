#include "setup/options_form.h"

#include <exception>
#include <system_error>

#include "catalogue/files.h"

namespace brizalog {

OptionsFormModel::OptionsFormModel() {
    for (const OptionRow& row : OptionRows()) {
        Control& control = rows.emplace_back();
        control.text = row.kind == OptionKind::Flag ? std::string(row.caption) : std::string();
        controls.Add(std::string(row.tag), control);
    }
    OK.text = "OK";
    Cancel.text = "Cancel";
    controls.Add("OK", OK);
    controls.Add("Cancel", Cancel);
}

OptionsForm::OptionsForm(std::filesystem::path folder, Dialogs& dialogs)
    : m_folder(std::move(folder)), m_dialogs(dialogs) {}

void OptionsForm::Form_Load() {
    m_loaded = ReadOptions(m_folder);
    for (const OptionRow& row : OptionRows()) {
        Control& control = *m_model.Row(row.tag);
        if (row.kind == OptionKind::Flag) {
            control.checked = m_loaded.Flag(row.tag);
        } else {
            control.text = m_loaded.Text(row.tag);
        }
    }
}

// A choice left at its default is not written: the file names only what the user changed, so
// a program whose default differs (the headless logger's) keeps its own, and a default changed
// by a later version reaches those who never touched it.
Options OptionsForm::Edited() const {
    Options options = m_loaded;
    for (const OptionRow& row : OptionRows()) {
        const Control& control = *m_model.Row(row.tag);
        std::string value = control.text;
        if (row.kind == OptionKind::Flag) {
            value = control.checked ? "1" : "0";
            Options fallback;
            if (control.checked == fallback.Flag(row.tag)) {
                value = std::string(row.fallback);
            }
        }
        if (value == row.fallback) {
            options.Erase(row.tag);
        } else {
            options.Set(row.tag, std::move(value));
        }
    }
    return options;
}

void OptionsForm::OK_Click() {
    const Options edited = Edited();
    std::error_code error;
    // Every choice at its default says nothing that a missing file does not: none is made.
    if (edited == Options{} && !std::filesystem::exists(InFolder(m_folder, kOptionsFile), error)) {
        m_closeRequested = true;
        return;
    }
    try {
        WriteOptions(edited, m_folder);
    } catch (const std::exception& failure) {
        m_dialogs.ShowMessage("The options could not be saved in options.cfg:\r\n" +
                              std::string(failure.what()));
        return;
    }
    m_closeRequested = true;
}

bool OptionsForm::Click(std::string_view name) {
    if (name == "OK") {
        OK_Click();
        return true;
    }
    if (name == "Cancel") {
        Cancel_Click();
        return true;
    }
    const OptionRow* row = FindOptionRow(name);
    if (row == nullptr) {
        return false;
    }
    if (row->kind == OptionKind::Flag) {
        Control& control = *m_model.Row(name);
        control.checked = !control.checked;
    }
    return true;
}

bool OptionsForm::SetText(std::string_view name, std::string_view text) {
    const OptionRow* row = FindOptionRow(name);
    if (row == nullptr) {
        return false;
    }
    Control& control = *m_model.Row(name);
    if (row->kind == OptionKind::Flag) {
        if (text != "0" && text != "1") {
            return false;
        }
        control.checked = text == "1";
        return true;
    }
    control.text = std::string(text);
    return true;
}

}  // namespace brizalog
