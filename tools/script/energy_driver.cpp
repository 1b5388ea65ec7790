#include "energy_driver.h"

#include <optional>

#include "energy/energy_view.h"

namespace brizalog::script {

namespace {

// Drives the Energy window's model. Its opening reads the book of the logs folder at once (the
// desktop reads it on a thread of its own behind a progress bar); "today" is the run's clock.
//
//   set Energy.View day|week|month|year     set Energy.Period 2026-03 (or 2026)
//   set Energy.Stacked 0|1                   click Energy.Previous|Next|Stacked|Refresh|ExportCsv
//   dump Energy                              view, period, price, currency, then per period shown
//                                            Wh(K,PERIOD), Whours(K,PERIOD), cost(PERIOD), marks
class EnergyDriver : public WindowDriver {
public:
    bool Handles(std::string_view window) const override { return window == "Energy"; }

    void Open(std::string_view /*window*/, bool /*modal*/, RunContext& run) override {
        if (m_model) {
            return;  // an open window is only brought to the front
        }
        const LocalDateTime now = run.clock.Now();
        m_model.emplace(run.form.state(), run.programFolder,
                        CivilDate{now.year, now.month, now.day});
        Read(run);
    }

    bool IsOpen(std::string_view /*window*/) const override { return m_model.has_value(); }

    void Set(std::string_view window, std::string_view control, std::string_view text,
             RunContext& /*run*/) override {
        EnergyModel& model = Opened(window);
        bool taken = false;
        if (control == "View") {
            taken = model.SetView(text);
        } else if (control == "Period") {
            taken = model.SetPeriod(text);
        } else if (control == "Stacked" && (text == "0" || text == "1")) {
            model.stacked = text == "1";
            taken = true;
        } else {
            throw ScriptError("window Energy has no control " + std::string(control));
        }
        if (!taken) {
            throw ScriptError("Energy." + std::string(control) + " takes no \"" +
                              std::string(text) + "\"");
        }
    }

    void Click(std::string_view window, std::string_view control, std::string_view /*item*/,
               RunContext& run) override {
        EnergyModel& model = Opened(window);
        if (control == "Previous") {
            model.Previous();
        } else if (control == "Next") {
            model.Next();
        } else if (control == "Stacked") {
            model.stacked = !model.stacked;
        } else if (control == "Refresh") {
            Read(run);
        } else if (control == "ExportCsv") {
            run.printer.Value("exported", model.ExportCsv().filename().string());
        } else if (control == "Close") {
            m_model.reset();
        } else {
            throw ScriptError("window Energy has no control " + std::string(control));
        }
    }

    void Dump(std::string_view window, RunContext& run) override {
        for (const auto& [name, value] : Opened(window).Dump()) {
            run.printer.Value(name, value);
        }
    }

private:
    EnergyModel& Opened(std::string_view window) {
        if (!m_model) {
            throw ScriptError("window " + std::string(window) + " is not open");
        }
        return *m_model;
    }
    void Read(RunContext& run) {
        m_model->SetTariff(TariffOf(run.form.state(), run.programFolder));
        m_model->SetBook(*OpenEnergyBook(run.programFolder, run.form.state().channels));
    }

    std::optional<EnergyModel> m_model;
};

}  // namespace

std::unique_ptr<WindowDriver> MakeEnergyDriver() {
    return std::make_unique<EnergyDriver>();
}

}  // namespace brizalog::script
