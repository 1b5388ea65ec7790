#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace brizalog {

// The six graph windows are one engine driven by one table per member. Everything in which the
// members differ and that a table can hold is here; what it cannot hold is a named flag with a
// comment saying what the user sees.

// Where a value of a record is stored: a series of the member, or the interval of the record.
inline constexpr int kIntervalTarget = -1;
inline constexpr int kNoSeries = -1;

// Start value of a series' extreme at each time-chart run.
struct ExtremeStart {
    enum class Kind : std::uint8_t {
        Value,         // the number `value`
        NotReset,      // keeps what the last run left (0 at the window's start)
        ChannelLimit,  // MaxLimit of the series' channel
    };
    Kind kind = Kind::Value;
    double value = 0;
};

// Text of a readout label under the mouse.
struct ReadoutText {
    enum class Kind : std::uint8_t {
        Rounded,  // the value rounded to `places`, as a plain number, then `unit`
        Pattern,  // the value through `pattern` (which may carry its unit)
    };
    Kind kind = Kind::Rounded;
    int places = 0;
    std::string_view pattern{};
    std::string_view unit{};
    bool windUnits = false;  // WSUnits of the settings follows
};

// Text of a readout label when it is clicked for the extremes.
struct ExtremeText {
    std::string_view maxPrefix = "MAX ";
    std::string_view minPrefix = "MIN ";
    std::string_view pattern{};  // empty: the value as a plain number
    std::string_view unit{};
    // Shown instead of the minimum when the deciding minimum is 0 or less; an empty text means
    // that the minimum is always shown.
    std::string_view fixedMinimum{};
    // The series whose minimum decides between the minimum and the fixed text; kNoSeries is the
    // series itself. All twelve W labels of GraphCC_QX decide on W8.
    int decidingSeries = kNoSeries;
};

// One series: an array of the window, its check box, its readout label, its place on the chart.
struct SeriesRow {
    std::string_view array{};          // name of the array, as "SeriesVolts"
    std::string_view box{};            // its check box, as "CheckVolts"
    std::string_view designCaption{};  // the box's caption until the load replaces it
    // The channel whose enableGRAPHING, LineColour, ChannelName and MaxLimit the box and the chart
    // take; 0 for a series of no channel.
    int channel = 0;
    bool keepCaption = false;  // the box keeps its design-time caption
    // Box state set by the load whatever the table says (-1: from enableGRAPHING[channel]).
    int fixedBoxState = -1;
    std::int32_t fixedColour = -1;  // a line colour of its own (-1: from the channel)
    int fixedLimit = -1;            // a limit of its own instead of MaxLimit (-1: from the channel)
    bool ownRange = false;          // scaled to the range of its own values in the view
    bool integerStore = false;      // a 16-bit integer array: values rounded, over 32767 fails
    std::string_view readout{};     // its readout label, as "vv"
    ReadoutText readoutText{};
    ExtremeText extremeText{};
    ExtremeStart maxStart{};
    ExtremeStart minStart{};
    std::string_view energyLabel{};  // label of its energy total, empty when it has none
};

// One step of reading a record, in the member's order.
struct ReadStep {
    enum class Kind : std::uint8_t {
        Tag,                 // the field between `open` and `close`
        ChannelTag,          // the field between "<" T(n) ">" and "</" T(n) ">", n = `channel`
        Product,             // target := a × b of this record
        Difference,          // target := a − b
        Sum,                 // target := a + b
        PositiveDifference,  // target := a − b, and 0 if that is negative
    };
    Kind kind{};
    std::string_view open{};
    std::string_view close{};
    int channel = 0;
    int scratch = 0;  // scratch value the field reads into; fields may share one
    int target = kIntervalTarget;
    int a = 0;
    int b = 0;
};

// One column of the CSV export after the time.
struct CsvColumn {
    int source{};  // a series, or kIntervalTarget
    std::string_view pattern{};
};

enum class MissingLog : std::uint8_t {
    Message,       // "unknown file error" and nothing else changes
    Silent,        // stops without a message
    KeepOldCount,  // no read; the closing test runs with the last RecordCount
    AppendFirst,   // no test: an empty line is appended to the log, which makes a missing one
};

enum class EmptyResult : std::uint8_t {
    ThatDate,       // "No data for that date"
    TodayThenThis,  // "No data for today" the first time, "No data for this date" later
};

enum class PrintKind : std::uint8_t {
    None,         // no PrintButton
    RedrawTwice,  // white, redraw, dark, redraw: the chart flashes white and no page comes out
    PrintForm,    // white, print the window, dark
};

enum class ScaleRule : std::uint8_t {
    PlusTwentieth,  // R + R / 20 when R is over 0, else 2
    TimesFactor,    // 1.05 × R when R is over 0, else 2
};

struct CollationNames {
    std::string_view create{};  // the file made with its heading when none is there
    std::string_view read{};    // the file searched for the log's name
    std::string_view append{};  // the file that gets the log's line
    std::string_view heading{};
};

struct GraphMember {
    std::string_view name{};       // "GraphBZ"
    std::string_view prefix{};     // of today's file name, "BZ_"
    std::string_view pattern{};    // of File1, "BZ*.txt"
    std::string_view captionOf{};  // the window whose caption the load sets to PersonalString
    std::span<const SeriesRow> series{};  // in the order of the chart
    int scratchCount{};
    std::span<const double> scratchStart{};  // each scratch value at the start of a line
    std::span<const ReadStep> reading{};
    bool intervalInteger{};  // LogInterval is a 16-bit integer array
    bool skipEmptyLines{};   // an empty line is not tried at all
    MissingLog missingLog{};
    EmptyResult emptyResult{};
    bool longLimitMessage{};  // the over-limit message tells how to avoid it
    ScaleRule scaleRule{};
    int minimumSpan{};  // drawn only if ViewEnd − ViewStart is over this; 0 otherwise
    std::span<const int> zeroLines{};  // series with a zero line, in drawing order
    bool numericCheck{};               // each value is tested to be a number before it is drawn
    bool hasXAxisChoices{};            // time, rpm, wind speed, Distribution
    int curveWatts = kNoSeries;        // the series of the power curves and the distribution
    int curveRpm = kNoSeries;
    int curveWind = kNoSeries;
    bool hasCollate{};
    CollationNames collation{};
    PrintKind print{};
    std::string_view csvHeading{};
    std::span<const CsvColumn> csvColumns{};
    bool csvMarksExcel{};  // appends an empty line to Excel/FileName and empties the .csv first
    std::string_view csvFolder{};      // "/Excel/", or "\Excel\" in GraphML
    bool needsSystemType{};            // the load acts only when SystemType is not 0
    bool logsFolderFixed{};            // File1 always shows the logs folder, whatever Dir1 shows
    std::string_view designCaption{};  // the window's own caption
};

// The six members, in the order GraphBZ, GraphDEMO, GraphRE, GraphML, GraphCC, GraphCC_QX.
std::span<const GraphMember> GraphMembers();
// The member called `name`, or nullptr.
const GraphMember* FindGraphMember(std::string_view name);

}  // namespace brizalog
