#pragma once

#include <string_view>
#include <vector>

namespace brizalog {

// The nine layouts of the main panel as data: the title and the plain menus, the groups with
// their stacking and captions, and which cell each channel's flags show. Read by setsystem.

// How a cell of the Frame1 groups or of Frame2 is shown. D[n] is enableDISPLAY[n], H[n]
// HARDWAREenabled[n].
enum class CellShow {
    ByChannel,  // shown when D[a] and H[a] are 1
    Always,
    Hidden,
    RuleW,       // shown when H[9], H[a], D[a], D[9] and D[b] are 1
    RuleWWithB,  // rule W that also needs H[b] (system 0)
};

struct CellRule {
    std::string_view cell;  // "Amps(1)"
    CellShow show;
    int a = 0;
    int b = 0;
};

// How one Frame5 channel cell is set up.
enum class ChannelCellKind {
    Temperature,   // captioned "temperature", Label3 reads "00.0C", the other two hidden
    MeterChannel,  // shown by channel's flags, captioned with its name, Label3 hidden
    RuleL,         // captioned as given, labels by rule L with the channel
};

struct ChannelCellRule {
    int k;  // Frame5(k)
    ChannelCellKind kind;
    int channel = 0;
    std::string_view caption;  // RuleL only
    bool shown = true;         // false: the group is set up but stays hidden
};

struct GroupPlacement {
    std::string_view group;    // "Frame1(0)", "Frame2", "Frame4(1)"
    int top;                   // twips from the top of the panel
    std::string_view caption;  // empty: keeps the caption it has
    bool shown = true;         // false: captioned only, stays hidden
};

struct SystemLayout {
    std::string_view title;  // Label11
    bool plotwindmill1;
    bool plotwindmill2;  // and plot2windmills
    bool VUmeters;
    bool batteryMonitor;
    int panelHeight;  // twips
    std::vector<GroupPlacement> groups;
    std::vector<CellRule> cells;
    std::vector<ChannelCellRule> channelCells;  // Frame5 cells not listed are hidden
};

// The layout of a system type 0..8.
const SystemLayout& LayoutOf(int systemType);

// Every group that a layout stacks; groups not placed by a layout are hidden.
inline constexpr std::string_view kPanelGroups[] = {"Frame1(0)", "Frame1(1)", "Frame1(2)",
                                                    "Frame2",    "Frame4(0)", "Frame4(1)"};

}  // namespace brizalog
