#include <gtest/gtest.h>

#include <string>

#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "setup/channel_setup.h"
#include "setup/small_input.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

// A provisioned folder, its table loaded as the main form holds it, and a desk that answers the
// small input windows the way a test tells it to.
class ChannelForms : public ::testing::Test {
protected:
    ChannelForms() {
        ProvisionProgramFolder(folder.path());
        LoadConfigFiles(state, folder.path());
        dialogs.onOpenWindow = [this](std::string_view window, bool) {
            opened.emplace_back(window);
            SmallInput input(window, state);
            input.Form_Load();
            if (answer) {
                answer(input);
            }
        };
    }

    void Table(const std::function<void(ChannelTable&)>& change) {
        ChannelTable table;
        SetDefaultChannelTable(table);
        change(table);
        WriteChannelTable(table, folder.path());
        LoadConfigFiles(state, folder.path());
    }

    testing::TestFolder folder;
    SharedState state;
    VirtualDialogs dialogs;
    std::vector<std::string> opened;
    std::function<void(SmallInput&)> answer;
};

TEST_F(ChannelForms, HardwareSaveIsRefusedForAnyLimitThatReadsAsZero) {
    // Row 2 is offered but not present, so its box is inactive; its 0 from the file still counts.
    Table([](ChannelTable& t) { t.MaxLimit[2] = 0; });
    state.settings.SystemType = 1;
    ChannelSetup form("setupHARDWAREchannels", state, folder.path(), dialogs);
    form.Form_Load();
    EXPECT_FALSE(form.model().rows[2].MAXLimit.enabled);
    const std::string before = folder.Read("channels.cfg");
    form.SaveSettings_Click();
    ASSERT_EQ(dialogs.messages.size(), 1u);
    EXPECT_EQ(dialogs.messages[0], ZeroLimitMessage());
    EXPECT_FALSE(form.CloseRequested());
    EXPECT_EQ(folder.Read("channels.cfg"), before);

    form.SetText("MAXLimit(2)", "20");  // inactive: typing changes nothing
    form.model().rows[2].MAXLimit.text = "twenty";
    form.SaveSettings_Click();
    EXPECT_EQ(dialogs.messages.size(), 2u);
    form.model().rows[2].MAXLimit.text = "20";
    form.SaveSettings_Click();
    EXPECT_TRUE(form.CloseRequested());
    EXPECT_NE(folder.Read("channels.cfg").find("<M2>20</M2>"), std::string::npos);
}

// A limit that the channel table cannot hold used to make the save do nothing without a word.
TEST_F(ChannelForms, HardwareSaveNamesTheRowWhoseLimitIsOutOfRange) {
    struct Case {
        const char* typed;
        bool saved;
    };
    const Case cases[] = {
        {"32767", true},   {"-32768", true},   {"32767.4", true}, {"32768", false},
        {"-32769", false}, {"32767.5", false}, {"1e9", false},
    };
    state.settings.SystemType = 1;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        dialogs.messages.clear();
        ChannelSetup form("setupHARDWAREchannels", state, folder.path(), dialogs);
        form.Form_Load();
        form.SetText("MAXLimit(9)", c.typed);
        const std::string before = folder.Read("channels.cfg");
        form.SaveSettings_Click();
        EXPECT_EQ(form.CloseRequested(), c.saved);
        if (c.saved) {
            EXPECT_TRUE(dialogs.messages.empty());
            continue;
        }
        ASSERT_EQ(dialogs.messages.size(), 1u);
        EXPECT_EQ(dialogs.messages[0],
                  "the maximum limit of channel 9 (SYSTEM VOLTS) is outside the range -32768 to "
                  "32767\r\ncorrect the problem and try again");
        EXPECT_EQ(folder.Read("channels.cfg"), before);
    }
}

TEST_F(ChannelForms, HardwareOpeningLetsThePresenceFlagDecideAndKeepsEnableLogging) {
    Table([](ChannelTable& t) {
        t.enableLOGGING[13] = 0;    // present, yet not logged: the box shows presence
        t.enableLOGGING[14] = 1;    // logged, yet absent
        t.HARDWAREenabled[18] = 1;  // a power row that is present has its tag active again
        t.XMLhardware[12] = "";     // an empty tag takes the design tag
    });
    state.settings.SystemType = 1;
    ChannelSetup form("setupHARDWAREchannels", state, folder.path(), dialogs);
    form.Form_Load();
    const auto& rows = form.model().rows;
    EXPECT_TRUE(rows[13].CheckEnable.checked);
    EXPECT_FALSE(rows[14].CheckEnable.checked);
    EXPECT_FALSE(rows[14].dataCHANNEL.enabled);
    EXPECT_TRUE(rows[18].XMLcode.enabled);
    EXPECT_FALSE(rows[19].XMLcode.enabled);
    EXPECT_FALSE(rows[3].Frame.visible);
    EXPECT_EQ(rows[12].XMLcode.text, "WS");
    EXPECT_EQ(state.channels.XMLhardware[12], "WS");

    form.SaveSettings_Click();
    ChannelTable saved;
    LoadChannelTable(folder.Read("channels.cfg"), saved);
    EXPECT_EQ(saved.enableLOGGING[13], 0);
    EXPECT_EQ(saved.enableLOGGING[14], 1);
}

TEST_F(ChannelForms, SmallInputsHandBackTheirValueOrLeaveItOnCancel) {
    state.settings.SystemType = 0;
    ChannelSetup form("setupHARDWAREchannels", state, folder.path(), dialogs);
    form.Form_Load();

    answer = [](SmallInput& input) {
        input.Text1_Change("");
        input.Label_Click(1);
    };
    form.Click("dataCHANNEL(9)");
    EXPECT_EQ(state.channels.ChannelName[9], "");

    answer = [](SmallInput& input) {
        input.Text1_Change("ignored");
        input.Label_Click(2);
    };
    form.Click("XMLcode(9)");
    EXPECT_EQ(form.model().rows[9].XMLcode.text, "V1");

    answer = [](SmallInput& input) { input.Label_Click(17); };
    form.Click("ChannelColour(9)");
    EXPECT_EQ(state.channels.LineColour[9], 16711935);
    answer = [](SmallInput& input) { input.Label_Click(14); };
    form.Click("ChannelColour(9)");
    EXPECT_EQ(state.channels.LineColour[9], 16777152);
    EXPECT_EQ(opened, (std::vector<std::string>{"TextInput", "XMLcodeINPUT", "ColourCHART",
                                                "ColourCHART"}));

    form.SaveSettings_Click();
    EXPECT_NE(folder.Read("channels.cfg").find("<C9></C9>"), std::string::npos);
}

TEST_F(ChannelForms, LoggingBoxesShowPresenceLockedAndTheTagIsTheLogTag) {
    Table([](ChannelTable& t) {
        t.enableLOGGING[2] = 1;
        t.XMLsoftware[9] = "VOLTS";
    });
    state.settings.SystemType = 1;
    ChannelSetup form("setupLOGGINGchannels", state, folder.path(), dialogs);
    form.Form_Load();
    EXPECT_FALSE(form.model().rows[2].CheckEnable.checked);
    EXPECT_FALSE(form.model().rows[1].CheckEnable.enabled);
    EXPECT_EQ(form.model().rows[9].XMLcode.text, "VOLTS");

    form.Click("CheckEnable(1)");
    EXPECT_EQ(state.channels.HARDWAREenabled[1], 1);
    answer = [](SmallInput& input) {
        input.Text1_Change("BANK");
        input.Label_Click(1);
    };
    form.Click("XMLcode(9)");
    EXPECT_EQ(state.channels.XMLsoftware[9], "BANK");
    EXPECT_EQ(state.channels.XMLhardware[9], "V1");
}

TEST_F(ChannelForms, DisplayAndGraphingFormsEditTheirOwnFlagOnly) {
    state.settings.SystemType = 6;
    ChannelSetup display("setupDISPLAYchannels", state, folder.path(), dialogs);
    display.Form_Load();
    EXPECT_FALSE(display.model().rows[2].CheckEnable.enabled);  // not present: locked
    display.Click("CheckEnable(2)");
    EXPECT_EQ(state.channels.enableDISPLAY[2], 0);
    display.Click("CheckEnable(9)");
    EXPECT_EQ(state.channels.enableDISPLAY[9], 0);
    EXPECT_EQ(state.channels.enableGRAPHING[9], 1);

    ChannelSetup graphing("setupGRAPHINGchannels", state, folder.path(), dialogs);
    graphing.Form_Load();
    graphing.Click("CheckEnable(2)");
    EXPECT_EQ(state.channels.enableGRAPHING[2], 1);
    EXPECT_EQ(ChannelRowsOffered(6), ChannelRowsOffered(7));
}

TEST_F(ChannelForms, AMissingTableIsToldAndTheFormStaysOpen) {
    std::filesystem::remove(folder.path() / "channels.cfg");
    for (const char* window : {"setupHARDWAREchannels", "setupLOGGINGchannels",
                               "setupGRAPHINGchannels", "setupDISPLAYchannels"}) {
        ChannelSetup form(window, state, folder.path(), dialogs);
        form.Form_Load();
        EXPECT_FALSE(form.CloseRequested());
    }
    EXPECT_EQ(dialogs.messages,
              std::vector<std::string>(4, "channel configuration file is missing"));
}

}  // namespace
}  // namespace brizalog
