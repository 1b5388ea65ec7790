#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"

namespace brizalog {

// Everything of the main form `Brizalog` that the system's rules touch: the panel's labels,
// groups and cells, the indicators, the delay box, the Check1 box and every menu entry, each by
// its own name. Control arrays are C arrays indexed as the system indexes them. The window layer
// renders this model after each handler and forwards the user's events to the handlers.
// Brizalog's own menu entries: each stands after the specified entries of its menu and opens a
// window of Brizalog's own. They are kept out of the model's controls and
// menu tree, so that everything the main form is specified to show, and its dump, stays as it
// is; an entry is reachable when its menu is.
struct AddedMenuEntry {
    std::string_view name;
    std::string_view parent;  // the specified menu it stands in
    std::string_view caption;
    std::string_view window;
    // The window edits options.cfg: the running program reads it again when the window closes.
    bool editsOptions = false;
};
inline constexpr AddedMenuEntry kAddedMenuEntries[] = {
    {"optionsMENU", "setup", "Options...", "Options", true},
    {"energyMENU", "history", "Energy...", "Energy"},
    {"BrizalogManual", "Help", "Brizalog manual", "BrizalogManual"},
};

struct MainFormModel {
    MainFormModel();
    MainFormModel(const MainFormModel&) = delete;
    MainFormModel& operator=(const MainFormModel&) = delete;

    std::string caption = "Brizalog";  // the main window's title: the status text
    int panelHeight = 2200;            // twips

    // Status and indicators.
    Control Label1;           // "Port Number  " and the port
    Control Label2;           // the latest logger frame
    Control Label11;          // title of the active layout
    Control Label15;          // "Systemtype " and the number
    Control ErrorString;      // last report
    Control goodDATAcounter;  // frames of the current interval
    Control DataOK;           // green flash on each frame
    Control LogOK;            // flash on each tick; red after a bad number
    Control delay;            // logging interval text box; enabled means editable
    Control Check1;           // "Alt Volts2": turbine 2's power from the second voltage

    // Panel groups.
    Control Frame1[3];   // windmill or battery groups
    Control Frame2;      // misc readings
    Control Frame4[2];   // channel groups of four cells each
    Control Frame5[8];   // one cell per channel
    Control Label3[8];   // in Frame5(k): amps or temperature
    Control Label5[8];   // in Frame5(k): watts
    Control Label13[8];  // in Frame5(k): watt-hours

    // Cells of the Frame1 groups.
    Control Volts[1];
    Control Amps[4];
    Control Watts[4];
    Control Whours[4];
    Control Wind[1];
    Control RPM[2];

    // Cells of Frame2.
    Control Label6;   // volts 2
    Control Label7;   // volts 3
    Control Label8;   // pulse 3
    Control Label9;   // pulse 4
    Control Label12;  // pulse 5

    // Menus. Each menu entry's `text` is its caption, `checked` its check mark.
    Control Configuration;
    Control setsystem[9];
    Control setup;
    Control SetupHardware;
    Control setuplogging;
    Control logging[9];
    Control channels2log;
    Control logTOfile[9];
    Control setupGraphMENU;
    Control graphing[9];
    Control setdisplaychannels;
    Control display[9];
    Control CALIBRATIONmenu;
    Control rawdatamenu;
    Control NOW;
    Control plot;
    Control plotwindmill1;
    Control plotwindmill2;
    Control plot2windmills;
    Control VUmeters;
    Control batteryMonitor;
    Control batteryMonitor2;
    Control maxMINS;
    Control rawCOMMdatamenu;
    Control previewLOGdata;  // the log preview dataTOlog
    Control rawFRAMEtext;    // the whole last frame, displayRAWdata
    Control history;
    Control graphingDEMO;
    Control PlotGraphBZ;
    Control PlotGraphCC;
    Control graphingCC_QX;
    Control PlotGraphRE;
    Control PlotGraphML;
    Control Help;
    Control Helpmenu;
    Control commInfohelp;
    Control channelHelp;
    Control startMENU;
    Control stopMENU;
    Control about;
    Control exitMENU;

    // Every control above by its own name ("Amps(2)", "setsystem(8)"), panel first, then menus.
    ControlRegistry controls;
    // The menu tree: each entry's name and the name of the menu it stands in ("" at the top).
    struct MenuEntry {
        std::string name;
        std::string parent;
    };
    std::vector<MenuEntry> menuTree;

    // The group that holds a panel control ("Label3(5)" stands in "Frame5(5)", which stands in
    // "Frame4(1)"); empty for a control that stands on the form itself.
    static std::string_view GroupOf(std::string_view name);
};

}  // namespace brizalog
