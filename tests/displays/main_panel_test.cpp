#include <gtest/gtest.h>

#include "acquisition/form_fixture.h"

namespace brizalog::testing {
namespace {

// Turns a channel fully on (both flags) or off in the table in memory.
void Enable(FormFixture& f, int channel, bool on = true) {
    f.state().channels.enableDISPLAY[channel] = on ? 1 : 0;
    f.state().channels.HARDWAREenabled[channel] = on ? 1 : 0;
}

TEST(Layouts, SystemEightStacksFiveGroupsAndCaptionsAHiddenThird) {
    StartedForm f(8);
    const MainFormModel& m = f.model();
    EXPECT_EQ(m.Label11.text, "2 MILLS, 240VACA + MISC");
    EXPECT_EQ(m.panelHeight, 6800);
    EXPECT_EQ(m.Frame1[1].text, "Windmill 2");
    EXPECT_TRUE(m.Frame1[1].visible);
    EXPECT_EQ(m.Frame1[1].top, 1200);
    EXPECT_EQ(m.Frame1[2].text, "Windmill 2 measurements");
    EXPECT_FALSE(m.Frame1[2].visible);
    EXPECT_EQ(m.Frame2.text, "Misc measurements");
    EXPECT_EQ(m.Frame2.top, 5100);
    EXPECT_EQ(m.Frame4[1].text, "240VAC inverter power measurement Channels");
    EXPECT_FALSE(m.Frame5[0].visible);
    EXPECT_EQ(m.Frame5[2].text, "DC power 1");
    EXPECT_EQ(m.Frame5[7].text, "240VAC power 4");
    // Amps(1) follows channel 1, not channel 2.
    EXPECT_TRUE(m.Amps[1].visible);
    EXPECT_FALSE(m.Label8.visible);

    ASSERT_TRUE(f.form.Click("setsystem(0)"));
    EXPECT_EQ(m.panelHeight, 2200);
    EXPECT_FALSE(m.Frame2.visible);
    EXPECT_FALSE(m.Frame4[0].visible);
    EXPECT_FALSE(m.Frame4[1].visible);
    for (const Control& cell : m.Frame5) {
        EXPECT_FALSE(cell.visible);
    }
    EXPECT_EQ(m.Frame1[0].text, "Windmill measurements and Battery volts");
}

TEST(Layouts, OnlyTheActiveTypesChannelSetupEntriesAreEnabled) {
    StartedForm f(0);
    ASSERT_TRUE(f.form.Click("setsystem(3)"));
    const MainFormModel& m = f.model();
    for (int t = 0; t < 9; ++t) {
        EXPECT_EQ(m.setsystem[t].checked, t == 3);
        EXPECT_EQ(m.logging[t].enabled, t == 3);
        EXPECT_EQ(m.display[t].enabled, t == 3);
    }
    EXPECT_FALSE(m.plotwindmill1.enabled);
    EXPECT_FALSE(m.batteryMonitor.enabled);
    EXPECT_NE(f.folder.Read("hardware.cfg").find("<SystemType>3</SystemType>"), std::string::npos);
}

TEST(Layouts, MeterTemperatureCellIsShownWhateverTheFlags) {
    StartedForm f(0);
    Enable(f, 19);
    f.state().channels.ChannelName[19] = "Kettle";
    ASSERT_TRUE(f.form.Click("setsystem(3)"));
    const MainFormModel& m = f.model();
    EXPECT_TRUE(m.Frame5[0].visible);
    EXPECT_EQ(m.Frame5[0].text, "temperature");
    EXPECT_EQ(m.Label3[0].text, "00.0C");
    EXPECT_FALSE(m.Label5[0].visible);
    EXPECT_TRUE(m.Frame5[1].visible);
    EXPECT_EQ(m.Frame5[1].text, "Kettle");
    EXPECT_FALSE(m.Label3[1].visible);
    EXPECT_FALSE(m.Frame5[2].visible);
}

TEST(Layouts, WithoutBatteryVoltageNoCellShowsPower) {
    StartedForm f(0);
    Enable(f, 2);
    f.state().channels.HARDWAREenabled[9] = 0;
    ASSERT_TRUE(f.form.Click("setsystem(5)"));
    const MainFormModel& m = f.model();
    EXPECT_TRUE(m.Label3[1].visible);
    EXPECT_FALSE(m.Label5[1].visible);
    EXPECT_FALSE(m.Label13[1].visible);
    EXPECT_FALSE(m.Label3[2].visible);
    EXPECT_TRUE(m.Frame5[2].visible);  // the group stays
    EXPECT_FALSE(m.Volts[0].visible);
}

TEST(Layouts, SystemNineLaysOutAsZeroButKeepsItsNumber) {
    StartedForm f(2);
    f.form.setsystem_Click(9);
    EXPECT_EQ(f.state().settings.SystemType, 9);
    EXPECT_EQ(f.model().Label15.text, "Systemtype 9");
    EXPECT_EQ(f.model().Label11.text, "Brizalog");
    EXPECT_TRUE(f.model().setsystem[0].checked);
    f.Receive("[<V>120</V>]");
    EXPECT_EQ(f.state().RawValue[9], 0);  // no decoder for 9
    EXPECT_EQ(f.state().GoodDataCount, 1);
}

TEST(PanelRefresh, SystemZeroCrossesTheGatesOfRpmAndWind) {
    StartedForm f(0);
    f.state().channels.enableDISPLAY[12] = 0;
    f.Receive("[<S>64</S><R>212</R>]");
    EXPECT_EQ(f.model().RPM[0].text, "");
    EXPECT_EQ(f.model().Wind[0].text, "6.4m/s");
}

TEST(PanelRefresh, AValueTooLargeForItsPatternIsPrintedWhole) {
    StartedForm f(0);
    f.Receive("[<V>10000</V><I>1234.5</I>]");
    EXPECT_EQ(f.model().Watts[0].text, "123450 W");
    EXPECT_EQ(f.model().Volts[0].text, "1000.00 V");
}

TEST(PanelRefresh, SystemSevenShowsTheSecondAndThirdVoltage) {
    StartedForm f(0);
    for (int n : {3, 10, 19}) {
        Enable(f, n);
    }
    ASSERT_TRUE(f.form.Click("setsystem(7)"));
    f.Receive("[<A3>45</A3><V1>120</V1><V2>131</V2>]");
    EXPECT_EQ(f.model().Label3[2].text, "4.5 A");
    EXPECT_EQ(f.model().Label5[2].text, "54 W");
    EXPECT_EQ(f.model().Label13[2].text, "0 Wh");
    EXPECT_EQ(f.model().Label6.text, "13.10 V");
    EXPECT_EQ(f.model().Label7.text, "Volts 3");  // channel 11 not displayed
}

TEST(Readouts, AnyAmpsCellShowsTheFirstChannelsMaximumInAllFour) {
    StartedForm f(0);
    for (int n : {1, 2, 3, 4}) {
        Enable(f, n);
    }
    ASSERT_TRUE(f.form.Click("setsystem(2)"));
    f.Receive("[<A1>52</A1><A3>90</A3>]");
    f.Receive("[<A1>31</A1>]");
    ASSERT_TRUE(f.form.Click("Amps(2)"));
    for (const Control& cell : f.model().Amps) {
        EXPECT_EQ(cell.text, "5.2");
    }
    f.Receive("[]");
    EXPECT_EQ(f.model().Amps[2].text, "9.00 A");
}

TEST(Readouts, TemperatureCellTogglesMaxMinMax) {
    StartedForm f(3);
    f.Receive("<msg><tmpr>18.5</tmpr></msg>");
    f.Receive("<msg><tmpr>23.25</tmpr></msg>");
    EXPECT_EQ(f.model().Label3[0].text, "23.3 C");
    std::vector<std::string> texts;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(f.form.Click("Label3(0)"));
        texts.push_back(f.model().Label3[0].text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"Max 23.3 C", "Min 18.5 C", "Max 23.3 C"}));
}

TEST(Readouts, HiddenSecondTemperatureOfTheMeter128CannotBeClicked) {
    StartedForm f(4);
    f.Receive("<msg><sensor>0</sensor><tmpr>19</tmpr></msg>");
    EXPECT_EQ(f.model().Label3[4].text, "19.0 C");
    ASSERT_TRUE(f.form.Click("Label3(4)"));
    EXPECT_EQ(f.model().Label3[4].text, "19.0 C");
    // The first temperature gets the amps text: its toggle asks for system 3.
    ASSERT_TRUE(f.form.Click("Label3(0)"));
    EXPECT_EQ(f.model().Label3[0].text, "Max 0.0 A");
}

TEST(Readouts, MiscCellsOfSystemEight) {
    StartedForm f(0);
    for (int n : {10, 11, 15}) {
        Enable(f, n);
    }
    ASSERT_TRUE(f.form.Click("setsystem(8)"));
    f.Receive("[<V1>131</V1><V2>250</V2><V3>120</V3><P1>70</P1>]");
    EXPECT_EQ(f.model().Label9.text, "7");
    ASSERT_TRUE(f.form.Click("Label6"));
    ASSERT_TRUE(f.form.Click("Label7"));
    ASSERT_TRUE(f.form.Click("Label9"));
    EXPECT_EQ(f.model().Label6.text, "Max 13.10");  // channel 9's maximum, not channel 10's
    EXPECT_EQ(f.model().Label7.text, "Max 12.00");
    EXPECT_EQ(f.model().Label9.text, "Max 07");
}

}  // namespace
}  // namespace brizalog::testing
