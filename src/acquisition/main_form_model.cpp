#include "acquisition/main_form_model.h"

#include "catalogue/system_types.h"

namespace brizalog {

namespace {

void Caption(Control& control, std::string text) {
    control.text = std::move(text);
}

}  // namespace

MainFormModel::MainFormModel() {
    // Design-time state of the panel.
    Caption(Label2, "raw data string");
    Caption(ErrorString, "error message string");
    Caption(Label1, "Port Number  ");
    Caption(Label15, "Systemtype ");
    Caption(Check1, "System V1");
    DataOK.colour = kGreen;
    DataOK.visible = false;
    LogOK.colour = kGreen;
    LogOK.visible = false;
    Caption(Frame1[1], "Windmill 2");
    Caption(Frame1[2], "AUX DC");
    Caption(Frame2, "Misc readings");
    Caption(Frame4[0], "System 4");
    Caption(Frame4[1], "System 5");
    Caption(Label6, "Volts 2");
    Caption(Label7, "Volts 3");
    Caption(Label9, "Pulse 4");
    Caption(Label12, "Pulse 5");
    Caption(Label8, "Pulse 3");

    // Design-time captions of the menus.
    Caption(Configuration, "Configure");
    Caption(setup, "Setup");
    Caption(SetupHardware, "setup Hardware");
    Caption(setuplogging, "Setup for Logger HARDWARE");
    Caption(channels2log, "Setup Channels to LOG");
    Caption(setupGraphMENU, "SetupGRAPHING channels");
    Caption(setdisplaychannels, "setup Display channels");
    Caption(CALIBRATIONmenu, "Channel Calibration");
    Caption(rawdatamenu, "raw DATA");
    Caption(NOW, "Now");
    Caption(plot, "Plot");
    Caption(plotwindmill1, "1 Windmill #1");
    Caption(plotwindmill2, "1 Windmill #2");
    Caption(plot2windmills, "2 Windmills");
    Caption(VUmeters, "BarMeters");
    Caption(batteryMonitor, "Battery Monitor 1");
    Caption(batteryMonitor2, "Battery Monitor 2");
    Caption(maxMINS, "Daily Max-Mins");
    Caption(rawCOMMdatamenu, "view Raw data");
    Caption(previewLOGdata, "preview Log data");
    Caption(rawFRAMEtext, "raw Frame text");
    Caption(history, "history");
    Caption(graphingDEMO, "graph DEMO");
    Caption(PlotGraphBZ, "Windmills + DC");
    Caption(PlotGraphCC, "CurrentCost");
    Caption(graphingCC_QX, "CurrentCostQX");
    Caption(PlotGraphRE, "RE house");
    Caption(PlotGraphML, "PULSE and MISC logs");
    Caption(Help, "Help");
    Caption(Helpmenu, "General help");
    Caption(commInfohelp, "COMM info");
    Caption(channelHelp, "channel Groups");
    Caption(startMENU, "Start");
    Caption(stopMENU, "Stop");
    Caption(about, "About");
    Caption(exitMENU, "Exit");
    for (int t = 0; t < kSystemTypeCount; ++t) {
        Caption(setsystem[t], std::string(MenuText(SystemMenu::setsystem, t)));
        Caption(logging[t], std::string(MenuText(SystemMenu::logging, t)));
        Caption(logTOfile[t], std::string(MenuText(SystemMenu::logTOfile, t)));
        Caption(graphing[t], std::string(MenuText(SystemMenu::graphing, t)));
        Caption(display[t], std::string(MenuText(SystemMenu::display, t)));
    }

    // The panel, by name.
    controls.Add("Label1", Label1);
    controls.Add("Label2", Label2);
    controls.Add("Label11", Label11);
    controls.Add("Label15", Label15);
    controls.Add("ErrorString", ErrorString);
    controls.Add("goodDATAcounter", goodDATAcounter);
    controls.Add("DataOK", DataOK);
    controls.Add("LogOK", LogOK);
    controls.Add("delay", delay);
    controls.Add("Check1", Check1);
    controls.AddArray("Frame1", Frame1);
    controls.Add("Frame2", Frame2);
    controls.AddArray("Frame4", Frame4);
    controls.AddArray("Frame5", Frame5);
    controls.AddArray("Label3", Label3);
    controls.AddArray("Label5", Label5);
    controls.AddArray("Label13", Label13);
    controls.AddArray("Volts", Volts);
    controls.AddArray("Amps", Amps);
    controls.AddArray("Watts", Watts);
    controls.AddArray("Whours", Whours);
    controls.AddArray("Wind", Wind);
    controls.AddArray("RPM", RPM);
    controls.Add("Label6", Label6);
    controls.Add("Label7", Label7);
    controls.Add("Label8", Label8);
    controls.Add("Label9", Label9);
    controls.Add("Label12", Label12);

    // The menus, by name, with the tree they stand in.
    auto menu = [this](const std::string& name, Control& control, const std::string& parent) {
        controls.Add(name, control);
        menuTree.push_back({name, parent});
    };
    auto menuArray = [this](const std::string& name, Control(&items)[9],
                            const std::string& parent) {
        for (int t = 0; t < 9; ++t) {
            const std::string itemName = name + "(" + std::to_string(t) + ")";
            controls.Add(itemName, items[t]);
            menuTree.push_back({itemName, parent});
        }
    };
    menu("Configuration", Configuration, "");
    menuArray("setsystem", setsystem, "Configuration");
    menu("setup", setup, "");
    menu("SetupHardware", SetupHardware, "setup");
    menu("setuplogging", setuplogging, "setup");
    menuArray("logging", logging, "setuplogging");
    menu("channels2log", channels2log, "setup");
    menuArray("logTOfile", logTOfile, "channels2log");
    menu("setupGraphMENU", setupGraphMENU, "setup");
    menuArray("graphing", graphing, "setupGraphMENU");
    menu("setdisplaychannels", setdisplaychannels, "setup");
    menuArray("display", display, "setdisplaychannels");
    menu("CALIBRATIONmenu", CALIBRATIONmenu, "setup");
    menu("rawdatamenu", rawdatamenu, "setup");
    menu("NOW", NOW, "");
    menu("plot", plot, "NOW");
    menu("plotwindmill1", plotwindmill1, "plot");
    menu("plotwindmill2", plotwindmill2, "plot");
    menu("plot2windmills", plot2windmills, "plot");
    menu("VUmeters", VUmeters, "NOW");
    menu("batteryMonitor", batteryMonitor, "NOW");
    menu("batteryMonitor2", batteryMonitor2, "NOW");
    menu("maxMINS", maxMINS, "NOW");
    menu("rawCOMMdatamenu", rawCOMMdatamenu, "NOW");
    menu("previewLOGdata", previewLOGdata, "NOW");
    menu("rawFRAMEtext", rawFRAMEtext, "NOW");
    menu("history", history, "");
    menu("graphingDEMO", graphingDEMO, "history");
    menu("PlotGraphBZ", PlotGraphBZ, "history");
    menu("PlotGraphCC", PlotGraphCC, "history");
    menu("graphingCC_QX", graphingCC_QX, "history");
    menu("PlotGraphRE", PlotGraphRE, "history");
    menu("PlotGraphML", PlotGraphML, "history");
    menu("Help", Help, "");
    menu("Helpmenu", Helpmenu, "Help");
    menu("commInfohelp", commInfohelp, "Help");
    menu("channelHelp", channelHelp, "Help");
    menu("startMENU", startMENU, "");
    menu("stopMENU", stopMENU, "");
    menu("about", about, "");
    menu("exitMENU", exitMENU, "");
}

std::string_view MainFormModel::GroupOf(std::string_view name) {
    struct Member {
        std::string_view control;
        std::string_view group;
    };
    // Windmill 1 (or the battery) in Frame1(0), windmill 2 in Frame1(1), the auxiliary DC
    // channels in Frame1(2), the misc readings in Frame2, four channel cells in each Frame4.
    static constexpr Member kMembers[] = {
        {"Volts(0)", "Frame1(0)"},  {"Amps(0)", "Frame1(0)"},   {"Watts(0)", "Frame1(0)"},
        {"Whours(0)", "Frame1(0)"}, {"Wind(0)", "Frame1(0)"},   {"RPM(0)", "Frame1(0)"},
        {"Amps(1)", "Frame1(1)"},   {"Watts(1)", "Frame1(1)"},  {"Whours(1)", "Frame1(1)"},
        {"RPM(1)", "Frame1(1)"},    {"Check1", "Frame1(1)"},    {"Amps(2)", "Frame1(2)"},
        {"Watts(2)", "Frame1(2)"},  {"Whours(2)", "Frame1(2)"}, {"Amps(3)", "Frame1(2)"},
        {"Watts(3)", "Frame1(2)"},  {"Whours(3)", "Frame1(2)"}, {"Label6", "Frame2"},
        {"Label7", "Frame2"},       {"Label8", "Frame2"},       {"Label9", "Frame2"},
        {"Label12", "Frame2"},      {"Frame5(0)", "Frame4(0)"}, {"Frame5(1)", "Frame4(0)"},
        {"Frame5(2)", "Frame4(0)"}, {"Frame5(3)", "Frame4(0)"}, {"Frame5(4)", "Frame4(1)"},
        {"Frame5(5)", "Frame4(1)"}, {"Frame5(6)", "Frame4(1)"}, {"Frame5(7)", "Frame4(1)"},
    };
    for (const Member& member : kMembers) {
        if (member.control == name) {
            return member.group;
        }
    }
    // Label3(k), Label5(k) and Label13(k) stand in Frame5(k).
    static constexpr std::string_view kCells[] = {"Frame5(0)", "Frame5(1)", "Frame5(2)",
                                                  "Frame5(3)", "Frame5(4)", "Frame5(5)",
                                                  "Frame5(6)", "Frame5(7)"};
    for (std::string_view cell : {"Label3(", "Label5(", "Label13("}) {
        if (name.size() == cell.size() + 2 && name.substr(0, cell.size()) == cell &&
            name.back() == ')' && name[cell.size()] >= '0' && name[cell.size()] <= '7') {
            return kCells[name[cell.size()] - '0'];
        }
    }
    return {};
}

}  // namespace brizalog
