// A CC128 with two appliance sensors, as a USB serial adapter hands it over: an hour of live
// messages every 6 s with a history burst, cut into random pieces. In system 4 a piece that
// holds the end of one message and the start of the next makes a frame whose end tag stands
// before its start tag.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "acquisition/form_fixture.h"
#include "boardsim/meter.h"
#include "catalogue/failure.h"

namespace brizalog::testing {
namespace {

using boardsim::Installation;
using boardsim::Meter;
using boardsim::MeterSetup;
using boardsim::MeterTime;
using boardsim::SerialLine;

// What the user calls a message cut badly: a frame that the 128 decoder reads (it names sensor 9
// or 0) and in which one of the four elements has its end tag before its start tag.
bool CutBadly(const std::string& frame) {
    if (frame.find("<sensor>9") == std::string::npos &&
        frame.find("<sensor>0") == std::string::npos) {
        return false;
    }
    static const std::array<std::pair<std::string, std::string>, 4> kElements = {{
        {"<tmpr>", "</tmpr>"},
        {"<ch1><watts>", "</watts></ch1>"},
        {"<ch2><watts>", "</watts></ch2>"},
        {"<ch3><watts>", "</watts></ch3>"},
    }};
    for (const auto& [start, end] : kElements) {
        const std::size_t s = frame.find(start);
        const std::size_t e = frame.find(end);
        if (s != std::string::npos && e != std::string::npos && e < s) {
            return true;
        }
    }
    return false;
}

// The watts of the house's first channel in a frame that holds the whole element after the
// house's sensor tag alone, or -1.
double HouseWatts(const std::string& frame) {
    if (frame.find("<sensor>0") == std::string::npos ||
        frame.find("<sensor>9") != std::string::npos) {
        return -1;
    }
    const std::size_t s = frame.find("<ch1><watts>");
    const std::size_t e = frame.find("</watts></ch1>");
    if (s == std::string::npos || e == std::string::npos || e < s) {
        return -1;
    }
    return std::stod(frame.substr(s + 12, e - s - 12));
}

struct StreamCase {
    const char* name;
    int minChunk;
    int maxChunk;
    double drop;
    unsigned seed;
};

const StreamCase kStreams[] = {
    {"Chunks32To128", 32, 128, 0.0, 1},
    {"Chunks32To128Again", 32, 128, 0.0, 2},
    {"Chunks64To256", 64, 256, 0.0, 3},
    {"PoorLine", 32, 128, 0.01, 4},
};

// An hour from 13:00:00, logging every 10 s, with ContainMeterFailures as `contain` says.
class Cc128Hour : public ::testing::TestWithParam<StreamCase> {
protected:
    struct Run {
        long cuts = 0;
        long badCuts = 0;
        long housesChecked = 0;
        bool ended = false;  // a failure left the intake
        bool endedAtBadCut = false;
    };

    Run Play(bool contain) {
        FormFixture f(4);
        f.clock.Set({2026, 3, 7, 13, 0, 0, 0});
        f.SetSetting("LogOn", "1");
        if (contain) {
            f.folder.Write("options.cfg", "<ContainMeterFailures>1</ContainMeterFailures>\r\n");
        }
        f.Start();
        const StreamCase& c = GetParam();
        Installation plant(c.seed);
        Meter meter(MeterSetup{boardsim::MeterModel::CC128, {0, 1, 9}, false}, c.seed);
        SerialLine line(c.minChunk, c.maxChunk, c.drop, c.seed);
        Run run;
        for (int second = 0; second < 3600; second += 6) {
            plant.Advance(6, 13 + second / 3600.0);
            const MeterTime time{89, 13, second / 60, second % 60};
            for (const std::string& piece : line.Deliver(meter.Cycle(plant, time))) {
                const std::string frame = f.form.ReceiveBuffer() + piece;
                const long good = f.state().GoodDataCount;
                const long contained = f.form.MeterFailuresContained();
                try {
                    f.Receive(piece);
                } catch (const Failure& failure) {
                    EXPECT_STREQ(failure.what(), "Invalid procedure call or argument");
                    run.ended = true;
                    run.endedAtBadCut = CutBadly(frame);
                    return run;
                }
                if (!f.form.ReceiveBuffer().empty()) {
                    continue;  // no cut yet
                }
                ++run.cuts;
                if (CutBadly(frame)) {
                    ++run.badCuts;
                    EXPECT_EQ(f.state().GoodDataCount, good) << frame;
                    EXPECT_EQ(f.form.MeterFailuresContained(), contained + 1);
                    EXPECT_EQ(f.model().LogOK.colour, kRed);
                    continue;
                }
                // Every other cut is decoded and counted, the one right after a bad cut too.
                EXPECT_EQ(f.state().GoodDataCount, good + 1) << frame;
                if (const double watts = HouseWatts(frame); watts >= 0) {
                    EXPECT_EQ(f.state().RawValue[22], watts) << frame;
                    ++run.housesChecked;
                }
            }
            f.timers.Advance(6000);
        }
        // Every interval of the hour is logged with a frame of its own.
        const std::string log = f.folder.Read("logs/CC_2026_03_07.txt");
        long lines = 0;
        for (const char ch : log) {
            lines += ch == '\n' ? 1 : 0;
        }
        EXPECT_EQ(lines, 360);
        EXPECT_EQ(log.find("No valid data"), std::string::npos);
        return run;
    }
};

TEST_P(Cc128Hour, WithTheChoiceOffTheFirstBadCutEndsTheProgram) {
    const Run run = Play(false);
    EXPECT_TRUE(run.ended);
    EXPECT_TRUE(run.endedAtBadCut);
}

TEST_P(Cc128Hour, WithTheChoiceOnEveryBadCutIsSkippedAndNoOtherFrameIsLost) {
    const Run run = Play(true);
    EXPECT_FALSE(run.ended);
    EXPECT_GT(run.badCuts, 0);  // the stream does cut messages badly
    EXPECT_GT(run.housesChecked, 100);
}

INSTANTIATE_TEST_SUITE_P(Streams, Cc128Hour, ::testing::ValuesIn(kStreams),
                         [](const auto& info) { return std::string(info.param.name); });

// The desktop's message when the failure ends it says where the choice is, and only where the
// choice would have helped.
TEST(MeterFailureMessage, NamesTheOptionOnlyWhereItWouldHaveHelped) {
    struct Case {
        int systemType;
        bool contain;
        bool hint;
    };
    for (const Case c : {Case{4, false, true}, Case{4, true, false}, Case{3, false, false},
                         Case{1, false, false}}) {
        FormFixture f(c.systemType);
        if (c.contain) {
            f.folder.Write("options.cfg", "<ContainMeterFailures>1</ContainMeterFailures>\r\n");
        }
        f.Start();
        const std::string text = f.form.EndingMessage("Invalid procedure call or argument");
        EXPECT_EQ(text.rfind("Invalid procedure call or argument", 0), 0u);
        EXPECT_EQ(text.find("Setup > Options...") != std::string::npos, c.hint) << c.systemType;
    }
}

}  // namespace
}  // namespace brizalog::testing
