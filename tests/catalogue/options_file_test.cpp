#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "catalogue/options.h"
#include "catalogue/provisioning.h"
#include "support/test_folder.h"

namespace brizalog::testing {
namespace {

using namespace std::literals;

// What the program reads from options.cfg as it stands in the folder, or with no file at all.
struct FileCase {
    const char* name;
    bool present;  // false: no file at all
    std::string_view text;
    bool contain;      // ContainMeterFailures as read
    bool scales;       // ChartScales as read (on by default)
    std::string host;  // MqttHost as read
};

const FileCase kFiles[] = {
    {"Absent", false, "", false, true, "localhost"},
    {"Empty", true, ""sv, false, true, "localhost"},
    {"Written", true,
     "<ContainMeterFailures>1</ContainMeterFailures>\r\n<MqttHost>pi</MqttHost>\r\n", true, true,
     "pi"},
    {"LineEndsOfUnix", true,
     "<ContainMeterFailures>1</ContainMeterFailures>\n<ChartScales>0</ChartScales>", true, false,
     "localhost"},
    // A damaged line is skipped and the lines around it still count.
    {"CutShort", true, "<ContainMeterFailures>1</ContainMeterFailures>\r\n<ChartScales>0</Chart",
     true, true, "localhost"},
    {"EndTagOfAnotherLine", true,
     "<ContainMeterFailures>1\r\n</ContainMeterFailures><MqttHost>x</MqttHost>", false, true,
     "localhost"},
    {"NotANumber", true, "<ContainMeterFailures>yes</ContainMeterFailures>\r\n", false, true,
     "localhost"},
    {"Binary", true,
     "\x7f"
     "ELF\x02\x01\x01\0\0\0<ContainMeterFailures>1"sv,
     false, true, "localhost"},
};

class OptionsFile : public ::testing::TestWithParam<FileCase> {};

TEST_P(OptionsFile, MeansItsValuesOrTheDefaults) {
    const FileCase& c = GetParam();
    TestFolder folder;
    if (c.present) {
        folder.Write("options.cfg", std::string(c.text));
    }
    const Options options = ReadOptions(folder.path());
    EXPECT_EQ(options.Flag("ContainMeterFailures"), c.contain);
    EXPECT_EQ(options.Flag("ChartScales"), c.scales);
    EXPECT_EQ(options.Text("MqttHost"), c.host);
}

INSTANTIATE_TEST_SUITE_P(Files, OptionsFile, ::testing::ValuesIn(kFiles),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(OptionsFile, WrittenWholeAndReadBackTheSame) {
    TestFolder folder;
    Options options;
    options.SetFlag("ContainMeterFailures", true);
    options.Set("MqttPort", "1884");
    options.Set("FutureChoice", "kept");
    WriteOptions(options, folder.path());
    EXPECT_EQ(folder.Read("options.cfg"),
              "<ContainMeterFailures>1</ContainMeterFailures>\r\n<MqttPort>1884</MqttPort>\r\n"
              "<FutureChoice>kept</FutureChoice>\r\n");
    EXPECT_EQ(ReadOptions(folder.path()), options);

    // Forgetting a choice takes its line out of the file.
    options.Erase("MqttPort");
    WriteOptions(options, folder.path());
    EXPECT_EQ(ReadOptions(folder.path()).Text("MqttPort"), "");
    EXPECT_FALSE(ReadOptions(folder.path()).Has("MqttPort"));
}

// A first run makes the three configuration files and never this one.
TEST(OptionsFile, IsNotMadeByAFirstRun) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    EXPECT_FALSE(folder.Exists("options.cfg"));
}

}  // namespace
}  // namespace brizalog::testing
