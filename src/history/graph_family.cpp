#include "history/graph_family.h"

#include <array>

namespace brizalog {

namespace {

using Kind = ReadStep::Kind;

constexpr ExtremeStart Value(double v) {
    return {ExtremeStart::Kind::Value, v};
}
constexpr ExtremeStart kNotReset{ExtremeStart::Kind::NotReset, 0};
constexpr ExtremeStart kChannelLimit{ExtremeStart::Kind::ChannelLimit, 0};

constexpr ReadoutText Rounded(int places, std::string_view unit, bool windUnits = false) {
    return {ReadoutText::Kind::Rounded, places, {}, unit, windUnits};
}
constexpr ReadoutText Patterned(std::string_view pattern, bool windUnits = false) {
    return {ReadoutText::Kind::Pattern, 0, pattern, {}, windUnits};
}

constexpr ReadStep Field(std::string_view open, std::string_view close, int scratch, int target) {
    return {Kind::Tag, open, close, 0, scratch, target, 0, 0};
}
constexpr ReadStep ChannelField(int channel, int scratch, int target) {
    return {Kind::ChannelTag, {}, {}, channel, scratch, target, 0, 0};
}
constexpr ReadStep Computed(Kind kind, int target, int a, int b) {
    return {kind, {}, {}, 0, 0, target, a, b};
}

// Texts of the extremes shared by several members.
constexpr ExtremeText kVoltsExtreme{"MAX ", "MIN ", "#0.00", " V", " Min = 0 V", kNoSeries};
constexpr ExtremeText kAmpsExtreme{"MAX ", "MIN ", "#0.0", " A", " Min = 0 A", kNoSeries};
constexpr ExtremeText kWattsExtreme{"MAX ", "MIN ", "##00", " W", " Min = 0 W", kNoSeries};

// ---- GraphBZ: the fullest member -----------------------------------------------------------

enum BZ {
    bzVolts,
    bzAmps1,
    bzAmps2,
    bzAmps3,
    bzAmps4,
    bzWatts1,
    bzWatts2,
    bzWatts3,
    bzWatts4,
    bzRpm1,
    bzRpm2,
    bzWind
};

SeriesRow BzAmps(std::string_view array, std::string_view box, std::string_view caption,
                 int channel, std::string_view readout, ExtremeStart max, ExtremeStart min) {
    return {.array = array,
            .box = box,
            .designCaption = caption,
            .channel = channel,
            .readout = readout,
            .readoutText = Rounded(1, " A"),
            .extremeText = kAmpsExtreme,
            .maxStart = max,
            .minStart = min};
}
SeriesRow BzWatts(std::string_view array, std::string_view box, std::string_view caption,
                  int channel, std::string_view readout, ExtremeStart min,
                  std::string_view energy) {
    return {.array = array,
            .box = box,
            .designCaption = caption,
            .channel = channel,
            .readout = readout,
            .readoutText = Rounded(0, " W"),
            .extremeText = kWattsExtreme,
            .maxStart = Value(0),
            .minStart = min,
            .energyLabel = energy};
}
constexpr ExtremeText kBzRpmExtreme{"MAX ", "MIN ", "##0", " rpm", " Min = 0 rpm", kNoSeries};

const std::array kBzSeries{
    SeriesRow{.array = "SeriesVolts",
              .box = "CheckVolts",
              .designCaption = "Volts",
              .channel = 9,
              .readout = "vv",
              .readoutText = Rounded(2, " V"),
              .extremeText = kVoltsExtreme,
              .maxStart = Value(0),
              .minStart = Value(100)},
    BzAmps("SeriesAmps1", "CheckAmps", "Amps 1", 1, "av", Value(0), Value(50)),
    BzAmps("SeriesAmps2", "CheckAmps2", "Amps2", 2, "a2v", Value(0), kNotReset),
    BzAmps("SeriesAmps3", "CheckAmps3", "Amps 3", 3, "a3v", kNotReset, kNotReset),
    BzAmps("SeriesAmps4", "Checkamps4", "Amps 4", 4, "a4v", kNotReset, kNotReset),
    BzWatts("SeriesWatts1", "CheckWatts", "Watts 1", 17, "wv", Value(2000), "wh1"),
    BzWatts("SeriesWatts2", "CheckWatts2", "Watts 2", 18, "w2v", kNotReset, "wh2"),
    BzWatts("SeriesWatts3", "CheckWatts3", "Watts 3", 19, "w3v", kNotReset, "wh3"),
    BzWatts("SeriesWatts4", "CheckWatts4", "Watts 4", 20, "w4v", kNotReset, "wh4"),
    SeriesRow{.array = "SeriesRPM1",
              .box = "CheckRPM",
              .designCaption = "RPM 1",
              .channel = 13,
              .readout = "rv",
              .readoutText = Rounded(0, " RPM"),
              .extremeText = kBzRpmExtreme,
              .maxStart = Value(0),
              .minStart = Value(500)},
    SeriesRow{.array = "SeriesRPM2",
              .box = "CheckRPM2",
              .designCaption = "RPM 2",
              .channel = 14,
              .readout = "r2v",
              .readoutText = Rounded(0, " RPM"),
              .extremeText = kBzRpmExtreme,
              .maxStart = Value(0),
              .minStart = kNotReset},
    // The wind label's unit on a click is a text that nothing sets: empty, unlike the mouse move.
    SeriesRow{.array = "SeriesWind",
              .box = "CheckWS",
              .designCaption = "",
              .channel = 12,
              .readout = "sv",
              .readoutText = Rounded(1, " ", true),
              .extremeText = {"MAX ", "MIN ", "#0.0", "", " Min = 0 ", kNoSeries},
              .maxStart = Value(0),
              .minStart = Value(100)},
};

constexpr std::array<double, 8> kZeroScratch8{};
// Volts and the interval share scratch 0, and both RPM series read channel 13's tag: a record
// with <L> but no volts tag gets its interval as volts, and the two RPM series are always equal.
const std::array kBzReading{
    Field("<L>", "</L>", 0, kIntervalTarget),
    ChannelField(9, 0, bzVolts),
    ChannelField(1, 1, bzAmps1),
    ChannelField(2, 2, bzAmps2),
    ChannelField(3, 3, bzAmps3),
    ChannelField(4, 4, bzAmps4),
    Computed(Kind::Product, bzWatts1, bzVolts, bzAmps1),
    Computed(Kind::Product, bzWatts2, bzVolts, bzAmps2),
    Computed(Kind::Product, bzWatts3, bzVolts, bzAmps3),
    Computed(Kind::Product, bzWatts4, bzVolts, bzAmps4),
    ChannelField(13, 5, bzRpm1),
    ChannelField(13, 6, bzRpm2),
    ChannelField(12, 7, bzWind),
};
constexpr std::array kBzZeroLines{static_cast<int>(bzAmps1), static_cast<int>(bzWatts1)};
constexpr std::array kBzCsv{CsvColumn{bzVolts, "##.00"}, CsvColumn{bzAmps1, "###.00"},
                            CsvColumn{bzWatts1, "####.00"}, CsvColumn{bzRpm1, "####"},
                            CsvColumn{bzWind, "###.0"}};

// ---- GraphDEMO: the windmill of system 0, with the fixed tags of its log -------------------

enum DEMO { demoVolts, demoAmps, demoWatts, demoRpm, demoWind };

const std::array kDemoSeries{
    SeriesRow{.array = "SeriesVolts",
              .box = "CheckVolts",
              .designCaption = "Volts",
              .channel = 9,
              .readout = "vv",
              .readoutText = Patterned("#0.00 V"),
              .extremeText = {"MAX ", "MIN ", "##00 V", "", "", kNoSeries},
              .maxStart = Value(0),
              .minStart = kChannelLimit},
    SeriesRow{.array = "SeriesAmps",
              .box = "CheckAmps",
              .designCaption = "Amps",
              .channel = 1,
              .readout = "av",
              .readoutText = Patterned("#0.0 A"),
              .extremeText = {"MAX ", "MIN ", "", " A", "", kNoSeries},
              .maxStart = Value(0),
              .minStart = kChannelLimit},
    SeriesRow{.array = "SeriesWatts",
              .box = "CheckWatts",
              .designCaption = "Watts",
              .channel = 17,
              .readout = "wv",
              .readoutText = Patterned("##00 W"),
              .extremeText = {"MAX ", "MIN ", "##00 W", "", "", kNoSeries},
              .maxStart = Value(0),
              .minStart = kChannelLimit,
              .energyLabel = "wh1"},
    SeriesRow{.array = "SeriesRPM",
              .box = "CheckRPM",
              .designCaption = "RPM",
              .channel = 13,
              .readout = "rv",
              .readoutText = Patterned("##0 RPM"),
              .extremeText = {"MAX ", "MIN ", "##00 RPM", "", "", kNoSeries},
              .maxStart = Value(0),
              .minStart = kChannelLimit},
    SeriesRow{.array = "SeriesWind",
              .box = "CheckWS",
              .designCaption = "",
              .channel = 12,
              .readout = "sv",
              .readoutText = Patterned("##0 ", true),
              .extremeText = {"MAX ", "MIN ", "##00 ", "", "", kNoSeries},
              .maxStart = Value(0),
              .minStart = kChannelLimit},
};
constexpr std::array<double, 1> kZeroScratch1{};
// One scratch value for every field: an absent field repeats the field read before it.
const std::array kDemoReading{
    Field("<V>", "</V>", 0, demoVolts), Field("<I>", "</I>", 0, demoAmps),
    Field("<R>", "</R>", 0, demoRpm),   Computed(Kind::Product, demoWatts, demoVolts, demoAmps),
    Field("<S>", "</S>", 0, demoWind),  Field("<L>", "</L>", 0, kIntervalTarget),
};
constexpr std::array kDemoCsv{CsvColumn{demoVolts, "##.00"}, CsvColumn{demoAmps, "###.00"},
                              CsvColumn{demoWatts, "####.00"}, CsvColumn{demoRpm, "####"},
                              CsvColumn{demoWind, "###.0"}};

// ---- GraphRE: eight power channels and the bank voltage ------------------------------------

SeriesRow ReWatts(std::string_view array, std::string_view box, std::string_view caption,
                  int channel, std::string_view readout, std::string_view energy, bool integer) {
    return {.array = array,
            .box = box,
            .designCaption = caption,
            .channel = channel,
            .integerStore = integer,
            .readout = readout,
            .readoutText = Patterned("##00 W"),
            .extremeText = kWattsExtreme,
            .maxStart = Value(0),
            .minStart = kChannelLimit,
            .energyLabel = energy};
}
const std::array kReSeries{
    ReWatts("SeriesW1", "CheckW1", "W1", 17, "wW1", "wh1", false),
    ReWatts("SeriesW2", "CheckW2", "W2", 18, "wW2", "wh2", false),
    ReWatts("SeriesW3", "CheckW3", "W3", 19, "wW3", "wh3", false),
    ReWatts("SeriesW4", "CheckW4", "W4", 20, "wW4", "wh4", true),
    ReWatts("SeriesW5", "CheckW5", "W5", 21, "wW5", "wh5", false),
    ReWatts("SeriesW6", "CheckW6", "W6", 22, "wW6", "wh6", false),
    ReWatts("SeriesW7", "CheckW7", "W7", 23, "wW7", "wH7", false),
    ReWatts("SeriesW8", "CheckW8", "W8", 24, "wW8", "wH8", true),
    SeriesRow{.array = "SeriesVolts",
              .box = "CheckV",
              .designCaption = "V",
              .channel = 9,
              .readout = "vv",
              .readoutText = Patterned("#0.00 V"),
              .extremeText = kVoltsExtreme,
              .maxStart = Value(0),
              .minStart = kChannelLimit},
};
// An absent field is 0, an absent <L> 10.
constexpr std::array<double, 10> kReScratch{0, 0, 0, 0, 0, 0, 0, 0, 10, 0};
const std::array kReReading{
    ChannelField(17, 0, 0), ChannelField(18, 1, 1), ChannelField(19, 2, 2),
    ChannelField(20, 3, 3), ChannelField(21, 4, 4), ChannelField(22, 5, 5),
    ChannelField(23, 6, 6), ChannelField(24, 7, 7), Field("<L>", "</L>", 8, kIntervalTarget),
    ChannelField(9, 9, 8),
};
// The watts columns run through four patterns by column; they differ on purpose.
constexpr std::array kReCsv{
    CsvColumn{8, "##.00"},   CsvColumn{0, "###.00"}, CsvColumn{1, "####.00"},
    CsvColumn{2, "####"},    CsvColumn{3, "###.0"},  CsvColumn{4, "###.00"},
    CsvColumn{5, "####.00"}, CsvColumn{6, "####"},   CsvColumn{7, "###.0"}};

// ---- GraphML: the three voltages and two pulse counts of system 8 --------------------------

SeriesRow MlVolts(std::string_view array, std::string_view box, int channel,
                  std::string_view readout) {
    return {.array = array,
            .box = box,
            .designCaption = box.substr(5),
            .channel = channel,
            .readout = readout,
            .readoutText = Rounded(2, " V"),
            .extremeText = {"MAX ", "MIN ", "#0.00", " V", "", kNoSeries},
            .maxStart = Value(0),
            .minStart = kChannelLimit};
}
SeriesRow MlPulse(std::string_view array, std::string_view box, int channel,
                  std::string_view readout) {
    return {.array = array,
            .box = box,
            .designCaption = box.substr(5),
            .channel = channel,
            .readout = readout,
            .readoutText = Rounded(2, ""),
            .extremeText = {"MAX ", "MIN ", "#00", "", "", kNoSeries},
            .maxStart = Value(0),
            .minStart = kChannelLimit};
}
const std::array kMlSeries{
    MlVolts("SeriesVolts1", "CheckVolts1", 9, "v1v"),
    MlVolts("SeriesVolts2", "CheckVolts2", 10, "v2v"),
    MlVolts("SeriesVolts3", "CheckVolts3", 11, "v3v"),
    MlPulse("SeriesPulse2", "CheckPulse2", 15, "p2v"),
    MlPulse("SeriesPulse3", "CheckPulse3", 16, "p3v"),
};
constexpr std::array<double, 6> kZeroScratch6{};
const std::array kMlReading{
    ChannelField(9, 0, 0),  ChannelField(10, 1, 1), ChannelField(11, 2, 2),
    ChannelField(15, 3, 3), ChannelField(16, 4, 4), Field("<L>", "</L>", 5, kIntervalTarget),
};
constexpr std::array kMlCsv{
    CsvColumn{kIntervalTarget, "#00"}, CsvColumn{0, "##.00"}, CsvColumn{1, "###.00"},
    CsvColumn{2, "####.00"},           CsvColumn{3, "###0"},  CsvColumn{4, "###0"}};

// ---- GraphCC and GraphCC_QX: the Current Cost meter ----------------------------------------

// The W boxes take channels 19 to 24 while the log's fields are W1 to W6: colours, names and
// limits come from those channels by position.
SeriesRow CcWatts(std::string_view array, std::string_view box, std::string_view caption,
                  int channel, std::string_view readout, std::string_view energy,
                  const ExtremeText& extreme) {
    return {.array = array,
            .box = box,
            .designCaption = caption,
            .channel = channel,
            .readout = readout,
            .readoutText = Patterned("###0 W"),
            .extremeText = extreme,
            .maxStart = Value(0),
            .minStart = Value(5000),
            .energyLabel = energy};
}
SeriesRow CcTemperature(std::string_view array, std::string_view box, std::string_view caption,
                        int state, std::string_view readout, double minStart) {
    return {.array = array,
            .box = box,
            .designCaption = caption,
            .fixedBoxState = state,
            .fixedColour = 65280,
            .fixedLimit = 50,
            .readout = readout,
            .readoutText = Patterned("#0.0"),
            .extremeText = {"MAX ", "MIN ", "", " C", "", kNoSeries},
            .maxStart = Value(0),
            .minStart = Value(minStart)};
}
constexpr ExtremeText kCcWattsExtreme{"MAX ", "Min ", "", " W", "", kNoSeries};

enum CC {
    ccTemp1,
    ccTemp2,
    ccW1,
    ccW2,
    ccW3,
    ccW4,
    ccW5,
    ccW6,
    qxW7,
    qxW8,
    qxW9,
    qxW10,
    qxW11,
    qxW12
};

const std::array kCcSeries{
    CcTemperature("SeriesTemp1", "Check1", "temperature 1", 1, "Cel1", 100),
    CcTemperature("SeriesTemp2", "Check2", "temperature 2", 0, "Cel2", 100),
    CcWatts("SeriesW1", "CheckW1", "W1", 19, "wW1", "wh1", kCcWattsExtreme),
    CcWatts("SeriesW2", "CheckW2", "W2", 20, "wW2", "wh2", kCcWattsExtreme),
    CcWatts("SeriesW3", "CheckW3", "W3", 21, "wW3", "wh3", kCcWattsExtreme),
    CcWatts("SeriesW4", "CheckW4", "W4", 22, "wW4", "wh4", kCcWattsExtreme),
    CcWatts("SeriesW5", "CheckW5", "W5", 23, "wW5", "wh5", kCcWattsExtreme),
    CcWatts("SeriesW6", "CheckW6", "W6", 24, "wW6", "wh6", kCcWattsExtreme),
};
constexpr std::array<double, 7> kZeroScratch7{};
// <C1>, <C2> and <W1> share one scratch value, so an absent one repeats the one before. The
// logs write "<C2" without its closing bracket, so <C2> is never found and the second
// temperature repeats the first.
const std::array kCcReading{
    Field("<C1>", "</C1>", 0, ccTemp1),       Field("<C2>", "</C2>", 0, ccTemp2),
    Field("<W1>", "</W1>", 0, ccW1),          Field("<W2>", "</W2>", 1, ccW2),
    Field("<W3>", "</W3>", 2, ccW3),          Field("<W4>", "</W4>", 3, ccW4),
    Field("<W5>", "</W5>", 4, ccW5),          Field("<W6>", "</W6>", 5, ccW6),
    Field("<L>", "</L>", 6, kIntervalTarget),
};
constexpr std::array kCcCsv{CsvColumn{ccW1, "00000"}, CsvColumn{ccW2, "00000"},
                            CsvColumn{ccW3, "00000"}, CsvColumn{ccW4, "00000"},
                            CsvColumn{ccW5, "00000"}, CsvColumn{ccW6, "00000"}};

// All twelve W labels of GraphCC_QX decide between minimum and fixed text on W8's minimum.
constexpr ExtremeText kQxWattsExtreme{"MAX ", "MIN ", "##00", " W", " Min = 0 W", qxW8};
// The derived series W7 to W12 have no channel of their own: their boxes take state and colour
// from channels 3 to 8 and keep their captions, and each is scaled to its own values.
SeriesRow QxDerived(std::string_view array, std::string_view box, std::string_view caption,
                    int channel, std::string_view readout, std::string_view energy) {
    SeriesRow row = CcWatts(array, box, caption, channel, readout, energy, kQxWattsExtreme);
    row.keepCaption = true;
    row.ownRange = true;
    return row;
}
const std::array kQxSeries{
    CcTemperature("SeriesTemp1", "temperature1", "temperature 1", 1, "Cel1", 50),
    CcTemperature("SeriesTemp2", "temperature2", "temperature 2", 0, "Cel2", 50),
    CcWatts("SeriesW1", "CheckW1", "W1", 19, "wW1", "wh1", kQxWattsExtreme),
    CcWatts("SeriesW2", "CheckW2", "W2", 20, "wW2", "wh2", kQxWattsExtreme),
    CcWatts("SeriesW3", "CheckW3", "W3", 21, "wW3", "wh3", kQxWattsExtreme),
    CcWatts("SeriesW4", "CheckW4", "W4", 22, "wW4", "wh4", kQxWattsExtreme),
    CcWatts("SeriesW5", "CheckW5", "W5", 23, "wW5", "wh5", kQxWattsExtreme),
    CcWatts("SeriesW6", "CheckW6", "W6", 24, "wW6", "wh6", kQxWattsExtreme),
    QxDerived("SeriesW7", "CheckW7", "W1-W3", 3, "wW7", "wH7"),
    QxDerived("SeriesW8", "CheckW8", "W1-W4", 4, "wW8", "wH8"),
    QxDerived("SeriesW9", "CheckW9", "W3+W5", 5, "wW9", "wH9"),
    QxDerived("SeriesW10", "CheckW10", "W2-W6", 6, "wW10", "wH10"),
    QxDerived("SeriesW11", "CheckW11", "W1-W2", 7, "wW11", "wH11"),
    QxDerived("SeriesW12", "CheckW12", "W2-W1", 8, "wW12", "wH12"),
};
const std::array kQxReading{
    Field("<C1>", "</C1>", 0, ccTemp1),
    Field("<C2>", "</C2>", 0, ccTemp2),
    Field("<W1>", "</W1>", 0, ccW1),
    Field("<W2>", "</W2>", 1, ccW2),
    Field("<W3>", "</W3>", 2, ccW3),
    Field("<W4>", "</W4>", 3, ccW4),
    Field("<W5>", "</W5>", 4, ccW5),
    Field("<W6>", "</W6>", 5, ccW6),
    Field("<L>", "</L>", 6, kIntervalTarget),
    Computed(Kind::Difference, qxW7, ccW1, ccW3),
    Computed(Kind::Difference, qxW8, ccW1, ccW4),
    Computed(Kind::Sum, qxW9, ccW3, ccW5),
    Computed(Kind::Difference, qxW10, ccW2, ccW6),
    Computed(Kind::PositiveDifference, qxW11, ccW1, ccW2),
    Computed(Kind::PositiveDifference, qxW12, ccW2, ccW1),
};

const std::array kMembers{
    GraphMember{.name = "GraphBZ",
                .prefix = "BZ_",
                .pattern = "BZ*.txt",
                .captionOf = "GraphBZ",
                .series = kBzSeries,
                .scratchCount = 8,
                .scratchStart = kZeroScratch8,
                .reading = kBzReading,
                .intervalInteger = false,
                .skipEmptyLines = false,
                .missingLog = MissingLog::Message,
                .emptyResult = EmptyResult::ThatDate,
                .longLimitMessage = false,
                .scaleRule = ScaleRule::PlusTwentieth,
                .minimumSpan = 0,
                .zeroLines = kBzZeroLines,
                .numericCheck = false,
                .hasXAxisChoices = true,
                .curveWatts = bzWatts1,
                .curveRpm = bzRpm1,
                .curveWind = bzWind,
                .hasCollate = true,
                .collation = {"BZWattHours.txt", "/logs/BZWattHours.txt", "BZWattHours.txt",
                              "daily watthours for these dates"},
                .print = PrintKind::RedrawTwice,
                .csvHeading = "TIME,VOLTS,AMPS,WATTS,RPM,SPEED",
                .csvColumns = kBzCsv,
                .csvMarksExcel = true,
                .csvFolder = "/Excel/",
                .needsSystemType = false,
                .logsFolderFixed = false,
                .designCaption = "GraphBZ"},
    // GraphDEMO's load puts PersonalString into GraphBZ's caption, not its own.
    GraphMember{.name = "GraphDEMO",
                .prefix = "WD_",
                .pattern = "*.txt",
                .captionOf = "GraphBZ",
                .series = kDemoSeries,
                .scratchCount = 1,
                .scratchStart = kZeroScratch1,
                .reading = kDemoReading,
                .intervalInteger = false,
                .skipEmptyLines = false,
                .missingLog = MissingLog::Silent,
                .emptyResult = EmptyResult::ThatDate,
                .longLimitMessage = false,
                .scaleRule = ScaleRule::TimesFactor,
                .minimumSpan = 5,
                .zeroLines = {},
                .numericCheck = false,
                .hasXAxisChoices = true,
                .curveWatts = demoWatts,
                .curveRpm = demoRpm,
                .curveWind = demoWind,
                .hasCollate = true,
                .collation = {"WDWattHours.txt", "/logs/WDWattHours.txt", "WDWattHours.txt",
                              "daily windmill DEMO watthours for these dates"},
                .print = PrintKind::RedrawTwice,
                .csvHeading = "TIME,VOLTS,AMPS,WATTS,RPM,SPEED",
                .csvColumns = kDemoCsv,
                .csvMarksExcel = true,
                .csvFolder = "/Excel/",
                .needsSystemType = false,
                .logsFolderFixed = false,
                .designCaption = "GraphDEMO"},
    GraphMember{.name = "GraphRE",
                .prefix = "RE_",
                .pattern = "RE*.txt",
                .captionOf = "GraphRE",
                .series = kReSeries,
                .scratchCount = 10,
                .scratchStart = kReScratch,
                .reading = kReReading,
                .intervalInteger = true,
                .skipEmptyLines = true,
                .missingLog = MissingLog::KeepOldCount,
                .emptyResult = EmptyResult::TodayThenThis,
                .longLimitMessage = true,
                .scaleRule = ScaleRule::PlusTwentieth,
                .minimumSpan = 0,
                .zeroLines = {},
                .numericCheck = true,
                .hasXAxisChoices = false,
                .hasCollate = true,
                .collation = {"REWattHours.txt", "/logs/REWattHours.txt", "REWattHours.txt",
                              "daily watthours for these dates"},
                .print = PrintKind::PrintForm,
                .csvHeading = "TIME,VOLTS,watts1,watts2,watts3,watts4,watts5,watts6,watts7,watts8",
                .csvColumns = kReCsv,
                .csvMarksExcel = true,
                .csvFolder = "/Excel/",
                .needsSystemType = false,
                .logsFolderFixed = true,
                .designCaption = "GraphRE"},
    GraphMember{.name = "GraphML",
                .prefix = "ML_",
                .pattern = "ML*.TXT",
                .captionOf = "GraphML",
                .series = kMlSeries,
                .scratchCount = 6,
                .scratchStart = kZeroScratch6,
                .reading = kMlReading,
                .intervalInteger = false,
                .skipEmptyLines = false,
                .missingLog = MissingLog::Message,
                .emptyResult = EmptyResult::ThatDate,
                .longLimitMessage = false,
                .scaleRule = ScaleRule::PlusTwentieth,
                .minimumSpan = 0,
                .zeroLines = {},
                .numericCheck = true,
                .hasXAxisChoices = false,
                .hasCollate = false,
                .collation = {},
                .print = PrintKind::None,
                .csvHeading = "TIME,Interval,volts1,volts2,volts3,pulse2,pulse3",
                .csvColumns = kMlCsv,
                .csvMarksExcel = false,
                .csvFolder = "\\Excel\\",
                .needsSystemType = false,
                .logsFolderFixed = false,
                .designCaption = "GraphML"},
    // The create step of GraphCC names "CCWattWours.txt", read and append "CCWattHours.txt":
    // two different files, kept so.
    GraphMember{.name = "GraphCC",
                .prefix = "CC_",
                .pattern = "CC*.txt",
                .captionOf = "GraphCC",
                .series = kCcSeries,
                .scratchCount = 7,
                .scratchStart = kZeroScratch7,
                .reading = kCcReading,
                .intervalInteger = true,
                .skipEmptyLines = false,
                .missingLog = MissingLog::AppendFirst,
                .emptyResult = EmptyResult::ThatDate,
                .longLimitMessage = true,
                .scaleRule = ScaleRule::TimesFactor,
                .minimumSpan = 0,
                .zeroLines = {},
                .numericCheck = false,
                .hasXAxisChoices = false,
                .hasCollate = true,
                .collation = {"CCWattWours.txt", "/logs/CCWattHours.txt", "CCWattHours.txt",
                              "daily Current Cost watthours for these dates"},
                .print = PrintKind::PrintForm,
                .csvHeading = "TIME,watts1,watts2,watts3,watts4,watts5,watts6",
                .csvColumns = kCcCsv,
                .csvMarksExcel = true,
                .csvFolder = "/Excel/",
                .needsSystemType = true,
                .logsFolderFixed = false,
                .designCaption = "GraphCC"},
    // GraphCC_QX's load puts PersonalString into GraphCC's caption, not its own.
    GraphMember{.name = "GraphCC_QX",
                .prefix = "CC_",
                .pattern = "CC*.txt",
                .captionOf = "GraphCC",
                .series = kQxSeries,
                .scratchCount = 7,
                .scratchStart = kZeroScratch7,
                .reading = kQxReading,
                .intervalInteger = true,
                .skipEmptyLines = false,
                .missingLog = MissingLog::AppendFirst,
                .emptyResult = EmptyResult::ThatDate,
                .longLimitMessage = true,
                .scaleRule = ScaleRule::TimesFactor,
                .minimumSpan = 0,
                .zeroLines = {},
                .numericCheck = false,
                .hasXAxisChoices = false,
                .hasCollate = true,
                .collation = {"QXWattHours.txt", "/logs/QXWattHours.txt", "QXWattHours.txt",
                              "daily Quixby watthours for these dates"},
                .print = PrintKind::PrintForm,
                .csvHeading = "TIME,watts1,watts2,watts3,watts4,watts5,watts6",
                .csvColumns = kCcCsv,
                .csvMarksExcel = true,
                .csvFolder = "/Excel/",
                .needsSystemType = false,
                .logsFolderFixed = false,
                .designCaption = "GraphCC_QX"},
};

}  // namespace

std::span<const GraphMember> GraphMembers() {
    return kMembers;
}

const GraphMember* FindGraphMember(std::string_view name) {
    for (const GraphMember& member : kMembers) {
        if (member.name == name) {
            return &member;
        }
    }
    return nullptr;
}

}  // namespace brizalog
