#include <string>

#include "dump_lines.h"
#include "script_runner.h"

namespace brizalog::script {

void ScriptRunner::DumpForm(const std::vector<std::string_view>& filter) {
    const Brizalog& form = *m_form;
    const SharedState& s = form.state();
    const Settings& settings = s.settings;
    DumpLines out(m_printer, filter);

    out.Numbers("RawValue", s.RawValue);
    out.Numbers("ChannelValue", s.ChannelValue);
    out.Numbers("ChannelWatts", s.ChannelWatts);
    out.Numbers("SumValue", s.SumValue);
    out.Numbers("AvgValue", s.AvgValue);
    out.Numbers("SumWatts", s.SumWatts);
    out.Numbers("AvgWatts", s.AvgWatts);
    out.Numbers("WattHours", s.WattHours);
    out.Numbers("DailyExtreme", s.DailyExtreme);
    out.Numbers("ADCOffset", s.calibration.ADCOffset);
    out.Numbers("ADCDivider", s.calibration.ADCDivider);

    out.Number("GoodDataCount", static_cast<double>(s.GoodDataCount));
    out.Number("LoggingActive", s.LoggingActive);
    out.Number("PlotWatts1", s.PlotWatts1);
    out.Number("PlotWatts2", s.PlotWatts2);
    out.Number("PlotRPM1", s.PlotRPM1);
    out.Number("PlotRPM2", s.PlotRPM2);
    out.Text("ErrorContext", s.ErrorContext);
    out.Text("LastLogTime", s.LastLogTime);
    out.Text("LastFrame", s.LastFrame);
    out.Text("ReceiveBuffer", form.ReceiveBuffer());
    out.Text("LoggerFrame", form.LoggerFrame());
    out.Text("MeterFrame", form.MeterFrame());
    out.Number("MeterFailuresContained", static_cast<double>(form.MeterFailuresContained()));

    out.Number("SystemType", settings.SystemType);
    out.Number("PortNumber", settings.PortNumber);
    out.Number("BaudRate", settings.BaudRate);
    out.Number("SaveExcel", settings.SaveExcel);
    out.Number("LogDelay", settings.LogDelay);
    out.Number("LogOn", settings.LogOn);
    out.Text("WSUnits", settings.WSUnits);
    out.Number("DispMessages", settings.DispMessages);
    out.Text("PersonalString", settings.PersonalString);
    out.Text("LastFile", settings.LastFile);

    for (const FormTimer* timer : {&m_form->timer1(), &m_form->timer2(), &m_form->timer3()}) {
        out.Flag(timer->name() + ".enabled", timer->Enabled());
        out.Number(timer->name() + ".interval", timer->Interval());
    }
    out.Flag("port.open", m_serial.IsOpen());

    const MainFormModel& model = form.model();
    out.Text("caption", model.caption);
    out.Number("panelHeight", model.panelHeight);
    for (const auto& [name, control] : model.controls.items()) {
        out.Control(name, *control);
        if (name.rfind("Frame", 0) == 0) {
            out.Number(name + ".top", control->top);
        }
    }

    const std::string_view unused = out.Unused();
    if (!unused.empty()) {
        throw ScriptError("dump: nothing is called \"" + std::string(unused) + "\"");
    }
}

}  // namespace brizalog::script
