#include <gtest/gtest.h>

#include <random>

#include "history/distribution.h"
#include "history/history_fixture.h"

namespace brizalog::testing {
namespace {

// The counts as the window's rule states them: one pass over the view for every band.
std::vector<double> CountBandByBand(const RecordArray& watts, int first, int last, int bands) {
    std::vector<double> bins(static_cast<std::size_t>(bands) + 1, 0.0);
    for (int j = 0; j <= bands - 1; ++j) {
        const double lo = j * 10;
        const double hi = (j + 1) * 10;
        for (int i = first; i <= last; ++i) {
            const double w = watts[i];
            if (w > lo - 1 && w < hi) {
                bins[static_cast<std::size_t>(j)] += 1;
            }
        }
    }
    return bins;
}

TEST(PowerBands, OnePassCountsExactlyAsABandByBandPass) {
    std::mt19937 random(20260307);
    auto watts = std::make_unique<RecordArray>();
    std::uniform_real_distribution<double> anywhere(-20, 3100);
    std::uniform_int_distribution<int> whole(-2, 3010);
    std::uniform_int_distribution<int> kind(0, 3);
    for (int round = 0; round < 40; ++round) {
        for (int i = 1; i <= 2000; ++i) {
            const int w = whole(random);
            switch (kind(random)) {
                case 0:
                    (*watts)[i] = anywhere(random);
                    break;
                case 1:
                    (*watts)[i] = w;
                    break;  // on the limits
                case 2:
                    (*watts)[i] = w - 0.5;
                    break;  // inside an overlap
                default:
                    (*watts)[i] = std::nextafter(w, -1e9);
                    break;  // just below a limit
            }
        }
        const int bands = std::uniform_int_distribution<int>(0, 300)(random);
        std::vector<double> bins;
        CountPowerBands(*watts, 1, 2000, bands, bins);
        ASSERT_EQ(bins, CountBandByBand(*watts, 1, 2000, bands)) << "bands " << bands;
    }
}

TEST(PowerBands, OverlappingBandsCountAValueBetweenThemTwice) {
    auto watts = std::make_unique<RecordArray>();
    (*watts)[1] = 9.5;
    (*watts)[2] = 9;
    (*watts)[3] = 10;
    (*watts)[4] = -1;
    (*watts)[5] = 30;
    std::vector<double> bins;
    CountPowerBands(*watts, 1, 5, 3, bins);
    EXPECT_EQ(bins, (std::vector<double>{2, 2, 0, 0}));
}

class DistributionTest : public HistoryTest {};

TEST_F(DistributionTest, ALimitBeyondTheBinTableShowsItsFailureAndKeepsTheWindow) {
    WriteLog("BZ_2026_03_07.txt",
             {BzRecord("10:00", 12, 0), BzRecord("10:01", 12, 0), BzRecord("10:02", 12, 0)});
    GraphWindow& bz = windows.Open("GraphBZ");
    state.channels.MaxLimit[17] = 3000;
    bz.Click("Distribution");
    // All power 0: bin 0 holds every record, one bar at x = 1 at full height.
    const std::vector<std::string> drawn = Draw("GraphBZ");
    EXPECT_EQ(drawn[drawn.size() - 2], "line 1 0.1499999999999999 1 3.15 255");
    EXPECT_EQ(Text(bz, "Label7"), "Frequency vs Power");
    EXPECT_FALSE(bz.Find("DisplayButton")->visible);
    state.channels.MaxLimit[17] = 3010;
    bz.Click("Distribution");
    EXPECT_EQ(TakeMessages(), std::vector<std::string>{"Subscript out of range"});
    EXPECT_TRUE(bz.loaded);
    bz.Click("XAxisTime");
    EXPECT_TRUE(bz.Find("DisplayButton")->visible);
}

}  // namespace
}  // namespace brizalog::testing
