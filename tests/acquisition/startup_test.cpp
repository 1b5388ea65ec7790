#include <gtest/gtest.h>

#include "acquisition/form_fixture.h"
#include "catalogue/failure.h"

namespace brizalog::testing {
namespace {

TEST(Startup, LeavesTheFormWaitingWithSeededExtremesAndTheLayoutOnDisk) {
    FormFixture f(2);
    f.SetSetting("Port", "7");
    f.SetSetting("BaudRate", "9600");
    f.SetSetting("LogDelay", "30");
    f.Start();
    const MainFormModel& m = f.model();
    EXPECT_EQ(m.caption, "Waiting for Data");
    EXPECT_EQ(m.Label15.text, "Systemtype 2");
    EXPECT_EQ(m.Label1.text, "Port Number  7");
    EXPECT_EQ(m.delay.text, "30");
    EXPECT_TRUE(m.delay.enabled);
    EXPECT_EQ(f.form.timer1().Interval(), 30000);
    EXPECT_TRUE(f.form.timer1().Enabled());
    EXPECT_FALSE(f.form.timer3().Enabled());
    EXPECT_FALSE(m.DataOK.visible);
    EXPECT_TRUE(m.setsystem[2].checked);
    EXPECT_EQ(f.serial.portNumber(), 7);
    EXPECT_EQ(f.serial.settings(), "9600,N,8,1");
    EXPECT_EQ(f.state().DailyExtreme[24], 1000.0);
    EXPECT_EQ(f.state().DailyExtreme[28], 100.0);
    EXPECT_EQ(f.state().DailyExtreme[30], 100.0);
    // The layout rewrote the settings file: the cost tags of the first run are gone.
    EXPECT_EQ(f.folder.Read("hardware.cfg").find("<M>"), std::string::npos);
    EXPECT_TRUE(f.dialogs.messages.empty());
}

TEST(Startup, PortThatWillNotOpenShowsThePortMessageAndTheFormStaysUp) {
    FormFixture f(0);
    f.SetSetting("LogOn", "1");
    f.serial.SetOpenFails(true);
    f.Start();
    ASSERT_EQ(f.dialogs.messages.size(), 1u);
    EXPECT_EQ(f.dialogs.messages[0],
              "There is a possible Port Number problem. Check available PORTS\r\n\r\n"
              "RUN SETUP HARDWARE MENU");
    EXPECT_EQ(f.model().caption, "Waiting for Data");
    EXPECT_EQ(f.state().LoggingActive, 0);  // the auto-start never ran
}

TEST(Startup, SystemTypeAboveEightStartsAsZero) {
    StartedForm f(12);
    EXPECT_EQ(f.state().settings.SystemType, 0);
    EXPECT_EQ(f.model().Label11.text, "Brizalog");
    EXPECT_NE(f.folder.Read("hardware.cfg").find("<SystemType>0</SystemType>"), std::string::npos);
}

TEST(Startup, DamagedSettingsBeforeTheTrapEndTheProgram) {
    FormFixture f(0);
    f.folder.Write("hardware.cfg", "nothing here\r\n");
    EXPECT_THROW(f.Start(), Failure);
}

TEST(Reports, TrappedErrorWritesTheLogOnlyWhenEnabled) {
    StartedForm f(0);
    f.Receive("[<V>1</V>]");
    f.clock.Set({2026, 3, 7, 9, 5, 7, 0});
    f.form.ReportTrappedError("Overflow");
    EXPECT_FALSE(f.folder.Exists("errorlog.txt"));
    EXPECT_EQ(f.model().ErrorString.text,
              "  Last Error trapped  09:05:07  ---  calculations error  Overflow");
    EXPECT_EQ(f.model().ErrorString.foreColour, kRed);
    EXPECT_EQ(f.model().LogOK.colour, kRed);
    f.form.ErrorLogEnabled = 1;
    f.form.ReportTrappedError("Overflow");
    f.form.ReportTrappedError("Overflow");
    const std::string line =
        "2026_03_07  09:05:07  calculations error  Overflow <IM> [<V>1</V>]\r\n";
    EXPECT_EQ(f.folder.Read("errorlog.txt"), line + line);
}

TEST(Reports, PortProblemShowsOnLabel2AndAsAMessage) {
    StartedForm f(0);
    f.form.ReportPortProblem();
    EXPECT_EQ(f.model().Label2.text, "     possible COMMS problem");
    EXPECT_EQ(f.dialogs.messages.size(), 1u);
}

}  // namespace
}  // namespace brizalog::testing
