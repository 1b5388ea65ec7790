#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "catalogue/local_time.h"
#include "history/history_fixture.h"
#include "logging/log_records.h"

namespace brizalog::testing {
namespace {

// Which series of a window holds which value of the record, and how finely the record's pattern
// writes it: the reader must give back every value the logging tick wrote, to that precision.
struct Expect {
    int series;
    double value;
    double step;
};

class WriterRoundTrip : public HistoryTest {};

TEST_F(WriterRoundTrip, EveryWindowReadsBackWhatTheLoggingTickWrites) {
    std::mt19937 random(31);
    std::uniform_real_distribution<double> amps(-30, 30);
    std::uniform_real_distribution<double> volts(0, 60);
    std::uniform_real_distribution<double> power(-5000, 5000);
    std::uniform_int_distribution<int> minute(1, 1438);
    const std::string tag = DateTag(clock.Now(), false);

    for (int systemType = 0; systemType <= 8; ++systemType) {
        state.settings.SystemType = static_cast<std::int16_t>(systemType);
        state.settings.LogDelay = systemType == 5 ? 2.5 : 30;
        for (const LogFile& file : LogFilesOf(systemType)) {
            std::vector<std::vector<Expect>> expected;
            std::string text;
            for (int r = 0; r < 40; ++r) {
                for (int n = 1; n <= 16; ++n) {
                    state.AvgValue[n] = n <= 8 ? amps(random) : volts(random) * (n > 11 ? 20 : 1);
                }
                for (int n = 1; n <= 8; ++n) {
                    state.AvgWatts[n] = power(random);
                }
                const int m = minute(random);
                const LocalDateTime at{2026, 3, 7, m / 60, m % 60, 0, 0};
                text += LogRecord(file, HoursMinutes(at), state);
                const auto& v = state.AvgValue;
                const auto& w = state.AvgWatts;
                switch (file.family) {
                    case LogFamily::WD:
                        expected.push_back(
                            {{0, v[9], .01}, {1, v[1], .1}, {3, v[13], 1}, {4, v[12], 1}});
                        break;
                    case LogFamily::BZ:
                        expected.push_back({{0, v[9], .01},
                                            {1, v[1], .1},
                                            {2, v[2], .1},
                                            {3, v[3], .1},
                                            {4, v[4], .1},
                                            {9, v[13], 1},
                                            {10, v[13], 1},
                                            {11, v[12], 1}});
                        break;
                    case LogFamily::CC:
                        expected.push_back({{2, w[2], 1},
                                            {3, w[3], 1},
                                            {4, w[4], 1},
                                            {5, w[6], 1},
                                            {6, w[7], 1},
                                            {7, w[8], 1}});
                        break;
                    case LogFamily::RE:
                        expected.push_back({{0, w[1], 1},
                                            {1, w[2], 1},
                                            {2, w[3], 1},
                                            {3, w[4], 1},
                                            {4, w[5], 1},
                                            {5, w[6], 1},
                                            {6, w[7], 1},
                                            {7, w[8], 1},
                                            {8, v[9], .01}});
                        break;
                    case LogFamily::ML:
                        expected.push_back({{0, v[9], .01},
                                            {1, v[10], .01},
                                            {2, v[11], .01},
                                            {3, v[15], 1},
                                            {4, v[16], 1}});
                        break;
                }
            }
            const std::string literal = LogFileLiteral(file.prefix, tag);
            folder.Write(literal.substr(1), text);
            static constexpr const char* kWindow[] = {"GraphDEMO", "GraphBZ", "GraphCC", "GraphRE",
                                                      "GraphML"};
            const char* name = kWindow[static_cast<int>(file.family)];
            GraphWindow& window = windows.Open(name);
            window.Click("File1", literal.substr(6));
            ASSERT_EQ(window.RecordCount, 40) << name << " in system " << systemType;
            for (int k = 1; k <= 40; ++k) {
                for (const Expect& e : expected[static_cast<std::size_t>(k - 1)]) {
                    ASSERT_NEAR(window.Series(e.series)[k], e.value, e.step / 2 + 1e-9)
                        << name << " system " << systemType << " record " << k << " series "
                        << e.series;
                }
                ASSERT_NEAR(window.LogInterval[k], state.settings.LogDelay, 0.5);
            }
        }
    }
}

}  // namespace
}  // namespace brizalog::testing
