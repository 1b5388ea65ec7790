#include "setup_driver.h"

#include <map>

#include "dump_lines.h"
#include "help/help_viewer.h"
#include "setup/calibration_form.h"
#include "setup/channel_setup.h"
#include "setup/options_form.h"
#include "setup/small_input.h"

namespace brizalog::script {

namespace {

// `click WINDOW.close`: the window's close box in its title bar.
constexpr std::string_view kTitleBarClose = "close";

// One open (or last opened) window of this driver, whatever its kind.
class Held {
public:
    virtual ~Held() = default;
    virtual bool Click(std::string_view name) = 0;
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

    bool Click(std::string_view name) override {
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

class SetupDriver : public WindowDriver {
public:
    bool Handles(std::string_view window) const override {
        return ChannelSetup::IsChannelSetup(window) || SmallInput::IsSmallInput(window) ||
               window == CalibrationForm::kWindow || window == HelpViewer::kWindow ||
               window == OptionsForm::kWindow;
    }

    // Each opening makes the window afresh, as a form loaded again reads everything anew.
    void Open(std::string_view window, bool /*modal*/, RunContext& run) override {
        SharedState& state = run.form.state();
        Dialogs& dialogs = run.services.dialogs;
        const std::string name(window);
        m_windows.erase(name);
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

    void Click(std::string_view window, std::string_view control, std::string_view item,
               RunContext&) override {
        if (!item.empty()) {
            throw ScriptError("a click in window " + std::string(window) + " takes one name");
        }
        if (!Opened(window).Click(control)) {
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
};

}  // namespace

std::unique_ptr<WindowDriver> MakeSetupDriver() {
    return std::make_unique<SetupDriver>();
}

}  // namespace brizalog::script
