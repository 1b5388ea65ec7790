#include <gtest/gtest.h>

#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "setup/calibration_form.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

class CalibrationWindow : public ::testing::Test {
protected:
    CalibrationWindow() {
        ProvisionProgramFolder(folder.path());
        LoadConfigFiles(state, folder.path());
    }
    // Row 1 with zero 12, factor 0.5 and the letter A; the others as a first run left them.
    void RowOneCalibrated() {
        std::string text = DefaultCalibrationText();
        auto swap = [&](const std::string& from, const std::string& to) {
            text.replace(text.find(from), from.size(), to);
        };
        swap("<ADCDivider(1)>0.10<", "<ADCDivider(1)>0.5<");
        swap("<ADCOffset(1)>0<", "<ADCOffset(1)>12<");
        swap("<ChannelSelection(1)>V<", "<ChannelSelection(1)>A<");
        folder.Write("calibrations.cfg", text);
    }

    testing::TestFolder folder;
    SharedState state;
    VirtualDialogs dialogs;
};

TEST_F(CalibrationWindow, RowsShowTheSumFromTheFactorBox) {
    RowOneCalibrated();
    CalibrationForm form(state, folder.path(), dialogs);
    form.Form_Load();
    const CalibrationRow& row = form.model().rows[1];
    EXPECT_EQ(row.AUTOZEROBUTTON.text, "0012");
    EXPECT_EQ(row.Text1.text, "0.50000");
    EXPECT_TRUE(row.Amps.checked);
    EXPECT_TRUE(row.AUTOZEROBUTTON.enabled);

    state.RawValue[1] = 37;
    form.Timer1_Timer();
    EXPECT_EQ(row.Label1.text, "037");
    EXPECT_EQ(row.Label2.text, "12.50");

    form.SetText("Text1(1)", "1");
    form.Timer1_Timer();
    EXPECT_EQ(row.Label2.text, "25.00");
    EXPECT_EQ(state.calibration.ADCDivider[1], 0.5);
    form.SetText("Text1(1)", "one");
    form.Timer1_Timer();
    EXPECT_EQ(row.Label2.text, "25.00");
}

TEST_F(CalibrationWindow, OptionsOfTheOpeningAndOfAClickDiffer) {
    CalibrationForm form(state, folder.path(), dialogs);
    state.settings.SystemType = 8;
    form.Form_Load();
    const auto& rows = form.model().rows;
    // "V" on a row without Volts sets no option at all.
    EXPECT_FALSE(rows[12].Amps.checked || rows[12].Pulse.checked);
    EXPECT_TRUE(rows[9].Volts.checked);
    EXPECT_FALSE(rows[9].AUTOZEROBUTTON.enabled);
    form.Click("Volts(9)");
    EXPECT_TRUE(rows[9].AUTOZEROBUTTON.enabled);

    state.calibration.ADCOffset[13] = 40;
    form.Click("Pulse(13)");
    EXPECT_EQ(state.calibration.ChannelSelection[13], "P");
    EXPECT_EQ(state.calibration.ADCOffset[13], 0);
    EXPECT_EQ(rows[13].AUTOZEROBUTTON.text, "0");
    EXPECT_FALSE(rows[13].AUTOZEROBUTTON.enabled);
    EXPECT_FALSE(form.Click("Pulse(9)"));
}

TEST_F(CalibrationWindow, AutozeroTakesTheLastReadingAndResetOnlyTheCaption) {
    RowOneCalibrated();
    CalibrationForm form(state, folder.path(), dialogs);
    form.Form_Load();
    form.Click("AUTOZEROBUTTON(1)");  // no data has ever arrived
    EXPECT_EQ(state.calibration.ADCOffset[1], 0);
    EXPECT_EQ(form.model().rows[1].AUTOZEROBUTTON.text, "");
    EXPECT_EQ(form.model().caption, "calibration edit form  & INDEX = 1");

    state.RawValue[1] = 57;
    form.Click("AUTOZEROBUTTON(1)");
    form.Click("ZeroReset(1)");
    EXPECT_EQ(form.model().rows[1].AUTOZEROBUTTON.text, "0");
    EXPECT_EQ(state.calibration.ADCOffset[1], 57);
    form.SetText("Text1(9)", "half");
    form.Click("SAVEcalibration");
    EXPECT_TRUE(form.CloseRequested());
    EXPECT_FALSE(form.timer1().Enabled());
    const std::string saved = folder.Read("calibrations.cfg");
    EXPECT_NE(saved.find("<ADCOffset(1)>00057</ADCOffset(1)>"), std::string::npos);
    EXPECT_NE(saved.find("<ADCDivider(9)>half</ADCDivider(9)>"), std::string::npos);
}

TEST_F(CalibrationWindow, ATypeChosenBeforeExitStaysInMemory) {
    // A file without row 1's letter: the opening keeps whatever memory holds.
    std::string text = DefaultCalibrationText();
    const std::string letter = "<ChannelSelection(1)>V</ChannelSelection(1)>";
    text.erase(text.find(letter), letter.size());
    folder.Write("calibrations.cfg", text);
    {
        CalibrationForm form(state, folder.path(), dialogs);
        form.Form_Load();
        form.Click("Amps(1)");
        form.Click("CalibrationExit");
        EXPECT_TRUE(form.CloseRequested());
    }
    LoadConfigFiles(state, folder.path());
    CalibrationForm again(state, folder.path(), dialogs);
    again.Form_Load();
    EXPECT_TRUE(again.model().rows[1].Amps.checked);
    EXPECT_EQ(state.calibration.ChannelSelection[1], "A");
}

TEST_F(CalibrationWindow, AMissingFileLeavesTheRowsShowingMemory) {
    std::filesystem::remove(folder.path() / "calibrations.cfg");
    state.calibration.ADCOffset[2] = 7;
    state.calibration.ADCDivider[2] = 0.25;
    CalibrationForm form(state, folder.path(), dialogs);
    form.Form_Load();
    EXPECT_EQ(form.model().rows[2].AUTOZEROBUTTON.text, "0007");
    EXPECT_EQ(form.model().rows[2].Text1.text, "0.25000");
}

}  // namespace
}  // namespace brizalog
