#include <gtest/gtest.h>

#include <string>

#include "catalogue/config_files.h"
#include "catalogue/failure.h"
#include "catalogue/provisioning.h"
#include "support/failure_kind.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

using testing::FailureKindOf;
using testing::FirstRunFile;
using testing::TestFolder;

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) {
        text.replace(at, from.size(), to);
    }
    return text;
}

TEST(DefaultFiles, AreTheFirstRunTextsByteForByte) {
    EXPECT_EQ(DefaultChannelTableText(), FirstRunFile("channels.cfg"));
    EXPECT_EQ(SettingsShapeC(), FirstRunFile("hardware.cfg"));
    EXPECT_EQ(DefaultCalibrationText(), FirstRunFile("calibrations.cfg"));
}

TEST(SettingsFile, LoadsTheFirstRunValues) {
    Settings s;
    LoadSettings(FirstRunFile("hardware.cfg"), s);
    EXPECT_EQ(s.PortNumber, 3);
    EXPECT_EQ(s.BaudRate, 4800);
    EXPECT_EQ(s.SaveExcel, 0);
    EXPECT_EQ(s.LogDelay, 10);
    EXPECT_EQ(s.LogOn, 0);
    EXPECT_EQ(s.WSUnits, "m/s");
    EXPECT_EQ(s.DispMessages, 0);
    EXPECT_EQ(s.PersonalString, "Personal Program NAME");
    EXPECT_EQ(s.SystemType, 0);
}

TEST(SettingsFile, ShapeAWritesMemoryAndLoadsBack) {
    Settings s;
    s.PortNumber = 7;
    s.BaudRate = 9600;
    s.SaveExcel = 1;
    s.LogDelay = 2.5;
    s.LogOn = 1;
    s.WSUnits = "";
    s.DispMessages = 1;
    s.PersonalString = "  Hill farm ";
    s.SystemType = 8;
    s.PowerCents = {12, 13, 14};
    const std::string text = SettingsShapeA(s);
    EXPECT_EQ(text,
              "Program Config File\r\n\r\n<Port>7</Port>\r\n<SaveExcel>1</SaveExcel>\r\n"
              "<LogDelay>2.5</LogDelay>\r\n<LogOn>1</LogOn>\r\n<WSUnits></WSUnits>\r\n"
              "<BaudRate>9600</BaudRate>\r\n<DispMessages>1</DispMessages>\r\n"
              "<PersonalString>  Hill farm </PersonalString>\r\n<LastFile></LastFile>\r\n\r\n"
              "<SystemType>8</SystemType>\r\n\r\n");
    Settings back;
    LoadSettings(text, back);
    EXPECT_EQ(SettingsShapeA(back), text);
}

TEST(SettingsFile, ShapeBCarriesTheFormsFieldsAndTheCosts) {
    Settings s;
    LoadSettings(FirstRunFile("hardware.cfg"), s);
    SetupFormFields f;
    f.logDelay = 700;
    f.logOn = 1;
    f.dispMessages = 0;
    f.baudRate = "19200";
    f.personalString = "Bay cottage";
    f.cents[0] = "10";
    f.cents[1] = "22";
    f.cents[2] = "55";
    EXPECT_EQ(SettingsShapeB(s, f),
              "Program Config File\r\n\r\n<Port>3</Port>\r\n<SaveExcel>0</SaveExcel>\r\n"
              "<LogDelay>700</LogDelay>\r\n<LogOn>1</LogOn>\r\n<WSUnits>m/s</WSUnits>\r\n"
              "<BaudRate>19200</BaudRate>\r\n<DispMessages>0</DispMessages>\r\n"
              "<PersonalString>Bay cottage</PersonalString>\r\n<LastFile></LastFile>\r\n\r\n"
              "<SystemType>0</SystemType>\r\n\r\n<M>10</M>\r\n<J>22</J>\r\n<Z>55</Z>\r\n\r\n");
}

TEST(SettingsFile, LoadsFromAnyOrderAndAnyJoin) {
    Settings s;
    LoadSettings(
        "<SystemType>5</SystemType><LogDelay>10 seconds</LogDelay><Port> 4</Port>"
        "<BaudRate>4800</BaudRate><SaveExcel>1</SaveExcel><LogOn>0</LogOn><WSUnits>km/h</WSUnits>"
        "<DispMessages>1</DispMessages><PersonalString>a</PersonalString>b</PersonalString>",
        s);
    EXPECT_EQ(s.SystemType, 5);
    EXPECT_EQ(s.LogDelay, 10);
    EXPECT_EQ(s.PortNumber, 4);
    EXPECT_EQ(s.WSUnits, "km/h");
    EXPECT_EQ(s.DispMessages, 1);
    EXPECT_EQ(s.PersonalString, "a");
}

TEST(SettingsFile, ValuesOutsideTheirTypeAreOverflows) {
    const std::string text = FirstRunFile("hardware.cfg");
    Settings s;
    for (const char* bad : {"<SystemType>32768</SystemType>", "<SystemType>-32769</SystemType>"}) {
        EXPECT_EQ(FailureKindOf(
                      [&] { LoadSettings(Replace(text, "<SystemType>0</SystemType>", bad), s); }),
                  FailureKind::Overflow)
            << bad;
    }
    for (const char* bad :
         {"<DispMessages>256</DispMessages>", "<DispMessages>-1</DispMessages>"}) {
        EXPECT_EQ(FailureKindOf([&] {
                      LoadSettings(Replace(text, "<DispMessages>0</DispMessages>", bad), s);
                  }),
                  FailureKind::Overflow)
            << bad;
    }
    // Above 8 still loads: the start forces it to 0 later.
    LoadSettings(Replace(text, "<SystemType>0</SystemType>", "<SystemType>12</SystemType>"), s);
    EXPECT_EQ(s.SystemType, 12);
}

TEST(SettingsFile, DamagedFilesFailOrReadFromTheTop) {
    const std::string text = FirstRunFile("hardware.cfg");
    Settings s;
    // Both tags of a setting gone: the start of the program fails.
    EXPECT_EQ(FailureKindOf([&] { LoadSettings(Replace(text, "<LogOn>0</LogOn>", ""), s); }),
              FailureKind::InvalidArgument);
    // Only the opening tag gone: the value starts at position 6 of the file, in the title.
    LoadSettings(Replace(text, "<Port>3", "3"), s);
    EXPECT_EQ(s.PortNumber, 0);
    // A lower-case "<dispMessages>" instead of the real tag: not the tagged value.
    LoadSettings(Replace(text, "<DispMessages>0", "<dispMessages>1"), s);
    EXPECT_EQ(s.DispMessages, 0);
}

TEST(ChannelTableFile, LoadsTheDefaultsAndWritesThemBack) {
    ChannelTable table;
    LoadChannelTable(FirstRunFile("channels.cfg"), table);
    EXPECT_EQ(table.ChannelName[1], "WINDMILL AMPS");
    EXPECT_EQ(table.ChannelName[12], "WINDSPEED");
    EXPECT_EQ(table.LineColour[9], 16711935);
    EXPECT_EQ(table.MaxLimit[13], 500);
    EXPECT_EQ(table.XMLsoftware[24], "W8");
    EXPECT_EQ(table.enableDISPLAY[17], 1);
    EXPECT_EQ(table.enableDISPLAY[18], 0);
    EXPECT_EQ(table.enableDISPLAY[0], 0);
    // A save writes the 24 blocks without the first run's two extra empty lines.
    const std::string saved = ChannelTableText(table);
    EXPECT_EQ(saved + "\r\n\r\n", FirstRunFile("channels.cfg"));
}

TEST(ChannelTableFile, UserValuesRoundTrip) {
    ChannelTable table;
    SetDefaultChannelTable(table);
    table.ChannelName[12] = " wind at mast ";
    table.XMLsoftware[9] = "BATT";
    table.XMLhardware[9] = "V1";
    table.LineColour[3] = -1;
    table.MaxLimit[1] = -32768;
    table.MaxLimit[2] = 0;
    table.enableLOGGING[5] = 255;
    TestFolder folder;
    WriteChannelTable(table, folder.path());
    const std::string text = folder.Read("channels.cfg");
    EXPECT_NE(text.find("<C12> wind at mast </C12>\r\n"), std::string::npos);
    EXPECT_NE(text.find("<L3>-1</L3>\r\n"), std::string::npos);
    ChannelTable back;
    LoadChannelTable(text, back);
    EXPECT_EQ(ChannelTableText(back), text);
    EXPECT_EQ(back.ChannelName[12], " wind at mast ");
    EXPECT_EQ(back.MaxLimit[2], 0);  // loaded as 0; only the hardware setup form repairs it
}

TEST(ChannelTableFile, ValuesOutsideTheirTypeAreOverflows) {
    const std::string text = FirstRunFile("channels.cfg");
    ChannelTable table;
    const std::pair<const char*, const char*> cases[] = {
        {"<M1>20</M1>", "<M1>32768</M1>"},
        {"<M24>1000</M24>", "<M24>-40000</M24>"},
        {"<L2>255</L2>", "<L2>2147483648</L2>"},
        {"<L2>255</L2>", "<L2>-2147483649</L2>"},
        {"<enableGRAPHING3>0</enableGRAPHING3>", "<enableGRAPHING3>256</enableGRAPHING3>"},
        {"<HARDWAREenabled3>0</HARDWAREenabled3>", "<HARDWAREenabled3>-1</HARDWAREenabled3>"},
    };
    for (const auto& [good, bad] : cases) {
        EXPECT_EQ(FailureKindOf([&] { LoadChannelTable(Replace(text, good, bad), table); }),
                  FailureKind::Overflow)
            << bad;
    }
    LoadChannelTable(Replace(text, "<L2>255</L2>", "<L2>2147483647</L2>"), table);
    EXPECT_EQ(table.LineColour[2], 2147483647);
}

TEST(ChannelTableFile, AbsentTagsStopTheLoad) {
    ChannelTable table;
    EXPECT_EQ(FailureKindOf([&] {
                  LoadChannelTable(
                      Replace(FirstRunFile("channels.cfg"), "<C7>channel name</C7>", ""), table);
              }),
              FailureKind::InvalidArgument);
    EXPECT_EQ(table.ChannelName[6], "channel name");  // what came before the damage is loaded
}

TEST(CalibrationFile, DefaultsGiveAFactorOfOneTenthAndNoOffset) {
    Calibration calibration;
    LoadCalibration(FirstRunFile("calibrations.cfg"), calibration);
    for (int i = 1; i <= 16; ++i) {
        EXPECT_EQ(calibration.ADCDivider[i], 0.1) << i;
        EXPECT_EQ(calibration.ADCOffset[i], 0) << i;
    }
    EXPECT_EQ(calibration.ADCDivider[17], 0);
    EXPECT_EQ(calibration.ChannelSelection[1], "");  // not read by the load
}

TEST(CalibrationFile, TheFormsSavePadsOffsetsAndKeepsTextThatIsNoNumber) {
    Calibration calibration;
    std::string factors[17];
    for (int i = 1; i <= 16; ++i) {
        calibration.ChannelSelection[i] = "V";
        factors[i] = "0.1";
    }
    calibration.ADCOffset[1] = 123;
    factors[1] = "0.25";
    calibration.ADCOffset[2] = -45.6;
    calibration.ChannelSelection[2] = "A";
    factors[3] = "abc";
    factors[4] = " 2 ";
    const std::string text = CalibrationText(calibration, factors);
    const std::string firstBlock =
        "Calibration Settings\r\n\r\n<ADCDivider(1)>0.25000</ADCDivider(1)>\r\n"
        "<ADCOffset(1)>00123</ADCOffset(1)>\r\n"
        "<ChannelSelection(1)>V</ChannelSelection(1)>\r\n\r\n<ADCDivider(2)>";
    EXPECT_EQ(text.substr(0, firstBlock.size()), firstBlock);
    EXPECT_NE(text.find("<ADCOffset(2)>-00046</ADCOffset(2)>"), std::string::npos);
    EXPECT_NE(text.find("<ChannelSelection(2)>A</ChannelSelection(2)>"), std::string::npos);
    // A box with no number was once written as "0.00000"; a pattern gives such a text back.
    EXPECT_NE(text.find("<ADCDivider(3)>abc</ADCDivider(3)>"), std::string::npos);
    EXPECT_NE(text.find("<ADCDivider(4)>2.00000</ADCDivider(4)>"), std::string::npos);

    Calibration back;
    LoadCalibration(text, back);
    EXPECT_EQ(back.ADCOffset[1], 123);
    EXPECT_EQ(back.ADCOffset[2], -46);
    EXPECT_EQ(back.ADCDivider[1], 0.25);
    EXPECT_EQ(back.ADCDivider[3], 0);
}

TEST(LoadingAllFiles, ReadsAProvisionedFolderAndFailsOnAMissingFile) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    SharedState state;
    LoadConfigFiles(state, folder.path());
    EXPECT_EQ(state.settings.BaudRate, 4800);
    EXPECT_EQ(state.channels.XMLhardware[13], "R1");
    EXPECT_EQ(state.calibration.ADCDivider[16], 0.1);

    std::filesystem::remove(folder.path() / "calibrations.cfg");
    EXPECT_EQ(FailureKindOf([&] { LoadConfigFiles(state, folder.path()); }),
              FailureKind::FileNotFound);
}

}  // namespace
}  // namespace brizalog
