#include <gtest/gtest.h>

#include <filesystem>

#include "catalogue/virtual_platform.h"
#include "help/help_viewer.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

class HelpTopics : public ::testing::Test {
protected:
    testing::TestFolder folder;
    VirtualDialogs dialogs;
    HelpViewer viewer{folder.path(), dialogs};
};

TEST_F(HelpTopics, OnlyTheTxtFileEnablesATopicAndTheCfgFileIsShownWithoutItsFirstLine) {
    folder.Write("help.cfg", "A\r\nB\r\nC");
    viewer.Form_Load();
    EXPECT_EQ(dialogs.messages, (std::vector<std::string>{"help file seems to be missing"}));
    EXPECT_TRUE(viewer.model().rows.empty());
    EXPECT_EQ(viewer.model().heading, "general HELP");

    folder.Write("help.txt", "");
    viewer.Form_Load();
    EXPECT_EQ(viewer.model().rows, (std::vector<std::string>{"B", "C"}));

    // A placeholder of one line and its line end shows one empty row.
    folder.Write("MyInfo.txt", "");
    folder.Write("MyInfo.cfg", "my info\r\n");
    viewer.Click("myinfo");
    EXPECT_EQ(viewer.model().rows, (std::vector<std::string>{""}));
    EXPECT_EQ(viewer.model().heading, "my info");
}

TEST_F(HelpTopics, AnUnreadableOrOverlongTopicShowsNothing) {
    folder.Write("credits.txt", "");
    viewer.Click("credits");
    EXPECT_TRUE(viewer.model().rows.empty());

    std::string lines;
    for (int i = 0; i <= 1000; ++i) {
        lines += "line\r\n";
    }
    // A folder, or a link to one, under the topic's name is a file that cannot be read.
    std::filesystem::create_directories(folder.path() / "credits.cfg");
    viewer.Click("credits");
    EXPECT_TRUE(viewer.model().rows.empty());
    std::filesystem::remove(folder.path() / "credits.cfg");

    folder.Write("credits.cfg", lines);  // 1002 pieces: one past the table
    viewer.Click("credits");
    EXPECT_TRUE(viewer.model().rows.empty());
    lines.resize(lines.size() - 2);  // 1001 pieces fit
    folder.Write("credits.cfg", lines);
    viewer.Click("credits");
    EXPECT_EQ(viewer.model().rows.size(), 1000u);
}

TEST_F(HelpTopics, TheTextMakerQuotesEachLineAsItStands) {
    viewer.codeMaker_Click();
    EXPECT_FALSE(folder.Exists("code.cfg"));
    folder.Write("codetext.txt", "Say \"hi\"");
    viewer.codeMaker_Click();
    EXPECT_EQ(folder.Read("code.cfg"), "temp = temp & \"Say \"hi\"\" & vbCrLf\r\n");
}

}  // namespace
}  // namespace brizalog
