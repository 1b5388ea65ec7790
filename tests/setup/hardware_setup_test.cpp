#include <gtest/gtest.h>

#include <set>

#include "acquisition/port_discovery.h"
#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "setup/program_setup.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

class PortsThatExist : public PortProbe {
public:
    explicit PortsThatExist(std::set<int> ports) : m_ports(std::move(ports)) {}
    bool commAvailable(int portNumber) override {
        probed.push_back(portNumber);
        return m_ports.count(portNumber) > 0;
    }
    std::vector<int> probed;

private:
    std::set<int> m_ports;
};

// ---- FindComms ------------------------------------------------------------------------------

TEST(FindComms, PortsThreeAndFiveAreListedAndTheLowestBecomesThePort) {
    Settings settings;
    settings.PortNumber = 9;
    PortsThatExist probe({3, 5, 17});
    FindComms form(settings, probe);
    form.FindPORTS_Click();

    EXPECT_EQ(form.model().cbocommItems, (std::vector<std::string>{"3", "5"}));
    EXPECT_EQ(form.model().AvailablePORTS.text, "\r\n3\r\n5");
    EXPECT_EQ(form.model().SelectedPort.text, "3");
    EXPECT_EQ(settings.PortNumber, 3);
    EXPECT_EQ(form.model().ExitFindCOMM.text, "Save");
    EXPECT_TRUE(form.model().FindPORTS.enabled);
    // Ports above 16 are never probed.
    EXPECT_EQ(probe.probed.size(), 16u);
    EXPECT_EQ(probe.probed.back(), 16);

    form.cbocomm_Click(1);
    EXPECT_EQ(settings.PortNumber, 5);
}

TEST(FindComms, NoPortLeavesTheWaitingCaptionsAndThePortAsItWas) {
    Settings settings;
    settings.PortNumber = 4;
    PortsThatExist probe({});
    FindComms form(settings, probe);
    form.FindPORTS_Click();

    EXPECT_FALSE(form.model().FindPORTS.enabled);
    EXPECT_EQ(form.model().ExitFindCOMM.text, "Please wait until ports are found");
    EXPECT_EQ(form.model().AvailablePORTS.text, "");
    EXPECT_EQ(settings.PortNumber, 4);
    form.ExitFindCOMM_Click();
    EXPECT_TRUE(form.CloseRequested());
}

TEST(FindComms, ASecondScanClearsTheFirst) {
    Settings settings;
    PortsThatExist probe({2});
    FindComms form(settings, probe);
    form.FindPORTS_Click();
    form.FindPORTS_Click();
    EXPECT_EQ(form.model().cbocommItems, (std::vector<std::string>{"2"}));
    EXPECT_EQ(form.model().AvailablePORTS.text, "\r\n2");
}

// ---- ProgramSetup ---------------------------------------------------------------------------

class ProgramSetupTest : public ::testing::Test {
protected:
    ProgramSetupTest() : probe({1, 3, 12}) {}

    ProgramSetup& Open() {
        form = std::make_unique<ProgramSetup>(state, folder.path(), dialogs, probe);
        form->Form_Load();
        return *form;
    }
    std::string SettingsText() const { return folder.Read("hardware.cfg"); }

    testing::TestFolder folder;
    SharedState state;
    VirtualDialogs dialogs;
    PortsThatExist probe;
    std::unique_ptr<ProgramSetup> form;
};

TEST_F(ProgramSetupTest, AMissingFileIsToldAndTheFieldsKeepTheirDesignValues) {
    ProgramSetup& setup = Open();
    ASSERT_EQ(dialogs.messages,
              (std::vector<std::string>{"hardware configuration file is missing"}));
    EXPECT_EQ(setup.model().BaudSelect.text, "4800");
    EXPECT_EQ(setup.model().WSUnits.text, "m/s");
    EXPECT_EQ(setup.model().caption, "Basic Logger Setup");
    EXPECT_FALSE(setup.CloseRequested());
}

TEST_F(ProgramSetupTest, OpeningFillsTheFieldsFromTheFileButNeverTheCostsOrTheMessagesBox) {
    Settings s;
    s.PortNumber = 5;
    s.BaudRate = 9600;
    s.SaveExcel = 1;
    s.LogDelay = 30;
    s.LogOn = 1;
    s.WSUnits = "km/h";
    s.DispMessages = 1;
    s.PersonalString = "Hilltop";
    s.SystemType = 6;
    SetupFormFields stored{30, 1, 1, "9600", "Hilltop", {"22", "44", "55"}};
    folder.Write("hardware.cfg", SettingsShapeB(s, stored));

    ProgramSetup& setup = Open();
    const ProgramSetupModel& m = setup.model();
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(m.caption, "Hilltop");
    EXPECT_EQ(m.Personalization.text, "Hilltop");
    EXPECT_EQ(m.PortNumber.text, "5");
    EXPECT_EQ(m.BaudSelect.text, "9600");
    EXPECT_EQ(m.LogDelay.text, "30");
    EXPECT_EQ(m.WSUnits.text, "km/h");
    EXPECT_TRUE(m.SaveExcel.checked);
    EXPECT_TRUE(m.LogOn.checked);
    EXPECT_FALSE(m.DisplayMessages.checked);
    EXPECT_EQ(state.settings.SystemType, 6);
    EXPECT_EQ(m.PortNumberItems, (std::vector<std::string>{"1", "3"}));
    EXPECT_EQ(m.BaudSelectItems.size(), 14u);
    EXPECT_EQ(m.BaudSelectItems.back(), "115200");
    EXPECT_EQ(m.LogDelayItems.size(), 10u);
    for (const Control& cents : m.Cents) {
        EXPECT_EQ(cents.text, "10");
    }
    EXPECT_EQ(m.CentsItems[2].size(), 28u);
    EXPECT_EQ(m.CentsItems[2][16], "44");

    // Saving without a change writes DispMessages 0 and the three costs at 10.
    setup.SaveSettingsButton_Click();
    EXPECT_TRUE(setup.CloseRequested());
    Settings expected = s;
    SetupFormFields saved{30, 1, 0, "9600", "Hilltop", {"10", "10", "10"}};
    EXPECT_EQ(SettingsText(), SettingsShapeB(expected, saved));
}

TEST_F(ProgramSetupTest, AShortIntervalIsWarnedAboutAndSavedAsTyped) {
    ProvisionProgramFolder(folder.path());
    ProgramSetup& setup = Open();
    setup.model().LogDelay.text = "5";
    setup.model().PortNumber.text = "7";
    setup.model().BaudSelect.text = "19200";
    setup.model().Cents[1].text = "25";
    setup.SaveSettingsButton_Click();

    EXPECT_EQ(dialogs.messages,
              (std::vector<std::string>{"Keep total logging time short, under an hour\r\n"
                                        "Good for graphing transients\r\n"
                                        "and for short duration logging"}));
    EXPECT_TRUE(setup.CloseRequested());
    EXPECT_EQ(state.settings.PortNumber, 7);
    EXPECT_EQ(state.settings.BaudRate, 19200);
    EXPECT_EQ(state.settings.PowerCents[1], 25);
    const std::string text = SettingsText();
    EXPECT_NE(text.find("<LogDelay>5</LogDelay>"), std::string::npos);
    EXPECT_NE(text.find("<Port>7</Port>"), std::string::npos);
    EXPECT_NE(text.find("<J>25</J>"), std::string::npos);
    // Logging interval and the rest of the fields reach memory only by the next load.
    EXPECT_EQ(state.settings.LogDelay, 10);
}

TEST_F(ProgramSetupTest, IntervalsOfZeroOrAWordAreRefusedAndLargeOnesKept) {
    ProvisionProgramFolder(folder.path());
    const std::string before = SettingsText();
    ProgramSetup& setup = Open();
    for (const char* refused : {"0", "soon"}) {
        setup.model().LogDelay.text = refused;
        setup.SaveSettingsButton_Click();
        EXPECT_FALSE(setup.CloseRequested()) << refused;
        EXPECT_EQ(SettingsText(), before) << refused;
    }
    setup.model().LogDelay.text = "700";
    setup.SaveSettingsButton_Click();
    EXPECT_TRUE(setup.CloseRequested());
    EXPECT_NE(SettingsText().find("<LogDelay>700</LogDelay>"), std::string::npos);
}

TEST_F(ProgramSetupTest, FindAllPortsShowsThePortThatTheSearchChose) {
    ProvisionProgramFolder(folder.path());
    ProgramSetup& setup = Open();
    dialogs.onOpenWindow = [&](std::string_view name, bool modal) {
        EXPECT_EQ(name, "FindComms");
        EXPECT_TRUE(modal);
        state.settings.PortNumber = 12;
    };
    setup.Label7_Click();
    EXPECT_EQ(setup.model().PortNumber.text, "12");
}

}  // namespace
}  // namespace brizalog
