#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "help/manual.h"
#include "support/test_folder.h"

namespace brizalog {
namespace {

TEST(Manual, HeadingAnchorsAreThoseTheReadmeLinksUse) {
    struct Case {
        const char* heading;
        const char* anchor;
    };
    const Case cases[] = {
        {"Install", "install"},
        {"Headless logging", "headless-logging"},
        {"Hardening: fuzzing, sanitizers and the long run",
         "hardening-fuzzing-sanitizers-and-the-long-run"},
        {"Serial port and the board simulator", "serial-port-and-the-board-simulator"},
        {"Logs and watt-hours", "logs-and-watt-hours"},
        {"`brizalog-logger` on a box", "brizalog-logger-on-a-box"},
        {"Wärme 2", "wärme-2"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(HeadingAnchor(c.heading), c.anchor) << c.heading;
    }
}

// A developer's section goes with its subsections up to the next "## "; a "#" line inside a
// code block is a shell comment, never a heading that ends or starts a section. A link to a
// section left out would lead nowhere: only its text stays.
TEST(Manual, UserGuideDropsTheDevelopersSectionsWholeAndReadsCodeBlocksAsText) {
    const std::string readme =
        "# Brizalog\n\nIntro, see [Logs](#logs-and-watt-hours) and [the "
        "runner](#scenario-runner).\n\n"
        "## Install\n\n```sh\n## Scenario runner\nmake package\n```\n\n"
        "## Scenario runner\n\nDriven by scripts.\n\n"
        "### Commands\n\n```\n## Install\n```\n\nstart\n\n"
        "## Logs and watt-hours\n\nDaily logs.\n";
    const std::string guide = UserGuide(readme);
    EXPECT_EQ(guide,
              "# Brizalog\n\nIntro, see [Logs](#logs-and-watt-hours) and the runner.\n\n"
              "## Install\n\n```sh\n## Scenario runner\nmake package\n```\n\n"
              "## Logs and watt-hours\n\nDaily logs.\n");

    const std::vector<ManualSection> sections = ManualSections(guide);
    ASSERT_EQ(sections.size(), 3u);
    EXPECT_EQ(sections[0].level, 1);
    EXPECT_EQ(sections[1].title, "Install");
    EXPECT_EQ(sections[2].anchor, "logs-and-watt-hours");
}

// The README that ships is the guide: its user sections stay, and the developers' sections that
// the guide leaves out are still called so (a renamed one would slip into the manual).
TEST(Manual, TheShippedReadmeKeepsItsUserSectionsAndLosesTheDevelopersOnes) {
    std::ifstream in(std::string(BRIZALOG_TEST_DATA) + "/../README.md", std::ios::binary);
    ASSERT_TRUE(in);
    std::ostringstream readme;
    readme << in.rdbuf();
    const std::string guide = UserGuide(readme.str());
    std::vector<std::string> kept;
    for (const ManualSection& section : ManualSections(guide)) {
        kept.push_back(section.title);
    }
    std::vector<std::string> all;
    for (const ManualSection& section : ManualSections(readme.str())) {
        all.push_back(section.title);
    }
    for (const char* user : {"Install", "Running Brizalog", "Channels, calibration and help",
                             "Headless logging", "Logs and watt-hours"}) {
        EXPECT_NE(std::find(kept.begin(), kept.end(), user), kept.end()) << user;
    }
    for (const char* developer :
         {"How the code is laid out", "Scenario runner", "History windows in the scenario runner",
          "Hardening: fuzzing, sanitizers and the long run"}) {
        EXPECT_NE(std::find(all.begin(), all.end(), developer), all.end()) << developer;
        EXPECT_EQ(std::find(kept.begin(), kept.end(), developer), kept.end()) << developer;
    }
}

// The first folder that holds the guide as a readable file wins. A README.md that is a folder is
// passed over like a missing one, never an exception that ends the program; with none at all,
// the page names every place looked in.
TEST(Manual, TheGuideComesFromTheFirstFolderThatHoldsItAsAFile) {
    testing::TestFolder root;
    root.Write("build/manual/README.md/stray.txt", "a folder in the guide's place");
    root.Write("share/doc/brizalog/README.md",
               "# Brizalog\n\n## Install\n\nSee [below](#logs).\n\n"
               "## Logs\n\nText.\n\n## Scenario runner\n\nx\n");
    root.Write("other/README.md", "# Other\n");
    ManualViewer viewer({root.path() / "build/manual", root.path() / "missing",
                         root.path() / "share/doc/brizalog", root.path() / "other"});
    viewer.Form_Load();
    const ManualModel& m = viewer.model();
    EXPECT_EQ(m.folder, root.path() / "share/doc/brizalog");
    EXPECT_EQ(m.markdown.find("Scenario runner"), std::string::npos);
    ASSERT_EQ(m.sections.size(), 2u);
    EXPECT_EQ(m.sections[1].title, "Logs");
    ASSERT_NE(viewer.SectionOfLink("#logs"), nullptr);
    EXPECT_EQ(viewer.SectionOfLink("#logs")->title, "Logs");
    EXPECT_EQ(viewer.SectionOfLink("#scenario-runner"), nullptr);
    EXPECT_EQ(viewer.SectionOfLink("https://example.org/#logs"), nullptr);

    ManualViewer nowhere({root.path() / "build/manual", root.path() / "missing"});
    nowhere.Form_Load();
    EXPECT_TRUE(nowhere.model().folder.empty());
    EXPECT_NE(nowhere.model().markdown.find((root.path() / "missing").generic_string()),
              std::string::npos);
    EXPECT_NE(nowhere.model().markdown.find("build/manual"), std::string::npos);
}

TEST(Manual, TheFoldersLookedInAreTheBuildsThenTheInstallsWithoutRepeats) {
    const std::vector<std::filesystem::path> folders =
        ManualFolders("/opt/brizalog/bin", "/usr/share/doc/brizalog");
    const std::vector<std::filesystem::path> expected = {
        "/opt/brizalog/bin/manual", "/usr/share/doc/brizalog", "/opt/brizalog/share/doc/brizalog"};
    EXPECT_EQ(folders, expected);
}

}  // namespace
}  // namespace brizalog
