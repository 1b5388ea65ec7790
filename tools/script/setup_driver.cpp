#include "setup_driver.h"

#include <algorithm>
#include <map>

#include "acquisition/port_discovery.h"
#include "dump_lines.h"
#include "help/help_viewer.h"
#include "setup/calibration_form.h"
#include "setup/channel_setup.h"
#include "setup/options_form.h"
#include "setup/program_setup.h"
#include "setup/small_input.h"

namespace brizalog::script {

namespace {

// `click WINDOW.close`: the window's close box in its title bar.
constexpr std::string_view kTitleBarClose = "close";

// One open (or last opened) window of this driver, whatever its kind.
class Held {
public:
    virtual ~Held() = default;
    // A click on control `name`; `item` is the entry of a list to choose, empty for any other
    // control.
    virtual bool Click(std::string_view name, std::string_view item) = 0;
    // True for a list whose entry a click names.
    virtual bool ChoosesItem(std::string_view /*name*/) const { return false; }
    // The window is replaced by a new opening: it stops its timers.
    virtual void Retire() {}
    virtual bool Set(std::string_view name, std::string_view text) = 0;
    virtual bool Closed() const = 0;
    virtual void Dump(DumpLines& out, RunContext& run) const = 0;
};

// The parts that every form of this driver shares: a caption, a registry of controls, handlers
// by control name, and a close request.
template <typename Form>
class HeldForm : public Held {
public:
    template <typename... Args>
    explicit HeldForm(Args&&... args) : form(std::forward<Args>(args)...) {}

    bool Click(std::string_view name, std::string_view /*item*/) override {
        if (name == kTitleBarClose) {
            form.TitleBarClose();
            return true;
        }
        return form.Click(name);
    }
    bool Set(std::string_view name, std::string_view text) override {
        if constexpr (requires { form.SetText(name, text); }) {
            return form.SetText(name, text);
        }
        return false;
    }
    bool Closed() const override { return form.CloseRequested(); }
    void Dump(DumpLines& out, RunContext& run) const override {
        out.Text("caption", form.model().caption);
        out.Flag("visible", !form.CloseRequested());
        out.Controls(form.model().controls);
        DumpMore(out, run);
    }
    virtual void DumpMore(DumpLines&, RunContext&) const {}

    Form form;
};

class HeldInput : public HeldForm<SmallInput> {
public:
    using HeldForm::HeldForm;
    void DumpMore(DumpLines& out, RunContext& run) const override {
        out.Text("EditText", run.form.state().EditText);
        out.Number("EditColour", static_cast<double>(run.form.state().EditColour));
    }
};

class HeldCalibration : public HeldForm<CalibrationForm> {
public:
    using HeldForm::HeldForm;
    ~HeldCalibration() override { form.timer1().Detach(); }
    void Retire() override { form.timer1().Detach(); }
    void DumpMore(DumpLines& out, RunContext&) const override {
        out.Flag("shrunk", form.model().shrunk);
        out.Flag("Timer1.enabled", form.timer1().Enabled());
    }
};

class HeldHelp : public HeldForm<HelpViewer> {
public:
    using HeldForm::HeldForm;
    void DumpMore(DumpLines& out, RunContext&) const override {
        const HelpViewerModel& m = form.model();
        out.Text("ListView1.heading", m.heading);
        for (std::size_t row = 0; row < m.rows.size(); ++row) {
            out.Text("ListView1.row(" + std::to_string(row + 1) + ")", m.rows[row]);
        }
    }
};

// The entries of a list, as `NAME.item(N)=TEXT` from 1.
void DumpItems(DumpLines& out, const std::string& name, const std::vector<std::string>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        out.Text(name + ".item(" + std::to_string(i + 1) + ")", items[i]);
    }
}

class HeldProgramSetup : public HeldForm<ProgramSetup> {
public:
    using HeldForm::HeldForm;
    void DumpMore(DumpLines& out, RunContext&) const override {
        const ProgramSetupModel& m = form.model();
        DumpItems(out, "PortNumber", m.PortNumberItems);
        DumpItems(out, "BaudSelect", m.BaudSelectItems);
        DumpItems(out, "LogDelay", m.LogDelayItems);
        for (int i = 0; i < 3; ++i) {
            DumpItems(out, "Cents(" + std::to_string(i) + ")", m.CentsItems[i]);
        }
    }
};

class HeldFindComms : public HeldForm<FindComms> {
public:
    using HeldForm::HeldForm;
    bool ChoosesItem(std::string_view name) const override { return name == "cbocomm"; }
    // `click FindComms.cbocomm 3` chooses the entry "3", which the list must show.
    bool Click(std::string_view name, std::string_view item) override {
        if (name != "cbocomm") {
            return HeldForm::Click(name, item);
        }
        const std::vector<std::string>& items = form.model().cbocommItems;
        const auto found = std::find(items.begin(), items.end(), item);
        if (found == items.end()) {
            throw ScriptError("FindComms.cbocomm lists no \"" + std::string(item) + "\"");
        }
        form.cbocomm_Click(static_cast<int>(found - items.begin()));
        return true;
    }
    void DumpMore(DumpLines& out, RunContext&) const override {
        DumpItems(out, "cbocomm", form.model().cbocommItems);
    }
};

class SetupDriver : public WindowDriver {
public:
    bool Handles(std::string_view window) const override {
        return ChannelSetup::IsChannelSetup(window) || SmallInput::IsSmallInput(window) ||
               window == CalibrationForm::kWindow || window == HelpViewer::kWindow ||
               window == ProgramSetup::kWindow || window == FindComms::kWindow ||
               window == OptionsForm::kWindow;
    }

    // Each opening makes the window afresh, as a form loaded again reads everything anew.
    void Open(std::string_view window, bool /*modal*/, RunContext& run) override {
        SharedState& state = run.form.state();
        Dialogs& dialogs = run.services.dialogs;
        const std::string name(window);
        // A window opened again while a handler of its earlier self may still be waiting on a
        // modal window of its own (a main form menu clicked behind FindComms): the earlier self
        // is kept until the run ends, so that handler finishes on a live form.
        if (const auto earlier = m_windows.find(name); earlier != m_windows.end()) {
            earlier->second->Retire();
            m_retired.push_back(std::move(earlier->second));
            m_windows.erase(earlier);
        }
        if (ChannelSetup::IsChannelSetup(window)) {
            auto held =
                std::make_unique<HeldForm<ChannelSetup>>(window, state, run.programFolder, dialogs);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
        } else if (SmallInput::IsSmallInput(window)) {
            auto held = std::make_unique<HeldInput>(window, state);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
        } else if (window == CalibrationForm::kWindow) {
            auto held = std::make_unique<HeldCalibration>(state, run.programFolder, dialogs);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
            form.timer1().Attach(&run.timers);
        } else if (window == ProgramSetup::kWindow) {
            auto held =
                std::make_unique<HeldProgramSetup>(state, run.programFolder, dialogs, run.ports);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
        } else if (window == FindComms::kWindow) {
            // FindComms has no load of its own: it opens empty until "find ports" is clicked.
            m_windows[name] = std::make_unique<HeldFindComms>(state.settings, run.ports);
        } else if (window == OptionsForm::kWindow) {
            auto held = std::make_unique<HeldForm<OptionsForm>>(run.programFolder, dialogs);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
        } else {
            auto held = std::make_unique<HeldHelp>(run.programFolder, dialogs);
            auto& form = held->form;
            m_windows[name] = std::move(held);
            form.Form_Load();
        }
    }

    bool IsOpen(std::string_view window) const override {
        const auto found = m_windows.find(window);
        return found != m_windows.end() && !found->second->Closed();
    }

    bool LeftUnlessAddressed(std::string_view window) const override {
        return window == ProgramSetup::kWindow;
    }

    void Click(std::string_view window, std::string_view control, std::string_view item,
               RunContext&) override {
        Held& held = Opened(window);
        if (!item.empty() && !held.ChoosesItem(control)) {
            throw ScriptError("a click in window " + std::string(window) + " takes one name");
        }
        if (!held.Click(control, item)) {
            throw ScriptError("window " + std::string(window) + " has no control " +
                              std::string(control));
        }
    }

    void Set(std::string_view window, std::string_view control, std::string_view text,
             RunContext&) override {
        if (!Opened(window).Set(control, text)) {
            throw ScriptError("window " + std::string(window) + " has no box " +
                              std::string(control) + " to type into");
        }
    }

    void Dump(std::string_view window, RunContext& run) override { DumpNamed(window, {}, run); }

    void DumpNamed(std::string_view window, const std::vector<std::string_view>& names,
                   RunContext& run) override {
        const auto found = m_windows.find(window);
        if (found == m_windows.end()) {
            throw ScriptError("window " + std::string(window) + " has not been opened");
        }
        DumpLines out(run.printer, names);
        found->second->Dump(out, run);
        const std::string_view unused = out.Unused();
        if (!unused.empty()) {
            throw ScriptError("dump: window " + std::string(window) + " has nothing called \"" +
                              std::string(unused) + "\"");
        }
    }

private:
    // A window must be open for the user to reach its controls.
    Held& Opened(std::string_view window) {
        const auto found = m_windows.find(window);
        if (found == m_windows.end() || found->second->Closed()) {
            throw ScriptError("window " + std::string(window) + " is not open");
        }
        return *found->second;
    }

    std::map<std::string, std::unique_ptr<Held>, std::less<>> m_windows;
    std::vector<std::unique_ptr<Held>> m_retired;
};

}  // namespace

std::unique_ptr<WindowDriver> MakeSetupDriver() {
    return std::make_unique<SetupDriver>();
}

}  // namespace brizalog::script
