// A whole day of system 8 at two frames a second across midnight, through the serial event,
// the calculation, the logging tick and the rollover, all on the virtual clock.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "acquisition/brizalog.h"
#include "catalogue/config_files.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "support/test_folder.h"

namespace brizalog::testing {
namespace {

// Raw readings of the two frames the board alternates, in the first-run hardware tags. With the
// first-run calibration (offset 0, factor 0.10) a reading of 52 is 5.2 A or 5.2 V.
struct Reading {
    std::array<double, 9> amps;  // A1..A8, index 0 unused
    double v1, v2, v3;
};
constexpr Reading kFrames[2] = {
    {{0, 52, 31, 17, 9, 12, 3, 0, 44}, 131, 262, 5},
    {{0, 61, 0, 22, 14, 7, 5, 1, 40}, 127, 250, 6},
};

std::string FrameText(const Reading& r) {
    std::ostringstream frame;
    frame << "[";
    for (int n = 1; n <= 8; ++n) {
        frame << "<A" << n << ">" << r.amps[n] << "</A" << n << ">";
    }
    frame << "<V1>" << r.v1 << "</V1><V2>" << r.v2 << "</V2><V3>" << r.v3 << "</V3>"
          << "<WS>80</WS><R1>2000</R1><R2>1500</R2><P1>7</P1><P2>0</P2>]";
    return frame.str();
}

// Power of slot n in one frame of system 8: slots 1..4 amps times V1, 5..8 amps times 240.
double SlotWatts(const Reading& r, int n) {
    const double amps = r.amps[n] * 0.1;
    return n <= 4 ? amps * (r.v1 * 0.1) : amps * 240;
}

long Lines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

TEST(Soak, ADayOfSystemEightAcrossMidnightKeepsEveryRecordAndWattHour) {
    TestFolder folder;
    ProvisionProgramFolder(folder.path());
    SharedState config;
    LoadConfigFiles(config, folder.path());
    config.settings.SystemType = 8;
    config.settings.LogDelay = 30;
    config.settings.LogOn = 1;
    WriteSettingsFile(config.settings, folder.path());

    VirtualClock clock;
    clock.Set({2026, 3, 7, 12, 0, 0, 0});
    VirtualTimers timers(clock);
    VirtualSerial serial;
    VirtualDialogs dialogs;
    Brizalog form(folder.path(), Services{clock, timers, serial, dialogs});
    form.Form_Load();
    ASSERT_EQ(form.state().LoggingActive, 1);

    // Frames at a quarter past and three quarters past each second, never on a tick.
    constexpr long kFramesPerDay = 24L * 3600 * 2;
    timers.Advance(250);
    for (long k = 0; k < kFramesPerDay; ++k) {
        serial.Queue(FrameText(kFrames[k % 2]));
        form.MSComm1_OnComm();
        // The 24 hours end at 12:00:00.000, with the last tick.
        timers.Advance(k + 1 < kFramesPerDay ? 500 : 250);
    }
    ASSERT_TRUE(dialogs.messages.empty());

    // Every 30-second interval holds 60 frames, half of each kind; ticks run from 12:00:30 to
    // 23:59:30 on the first day, from 00:00:00 to 12:00:00 on the second.
    for (const char* prefix : {"BZ", "RE", "ML"}) {
        EXPECT_EQ(Lines(folder.Read(std::string("logs/") + prefix + "_2026_03_07.txt")), 1439)
            << prefix;
        EXPECT_EQ(Lines(folder.Read(std::string("logs/") + prefix + "_2026_03_08.txt")), 1441)
            << prefix;
    }
    std::array<double, 9> tickWh{};
    for (int n = 1; n <= 8; ++n) {
        const double meanWatts = (SlotWatts(kFrames[0], n) + SlotWatts(kFrames[1], n)) / 2;
        tickWh[static_cast<std::size_t>(n)] = meanWatts * 30 / 3600;
    }

    // The rollover at 00:00:05.25 holds the 1440 ticks up to and including 00:00:00; the day's
    // remainder the 1440 ticks after it.
    const std::string whours = folder.Read("logs/Whours.txt");
    ASSERT_EQ(Lines(whours), 1) << whours;
    EXPECT_EQ(whours.substr(0, 23), "2026_03_08,00:00, Wh1, ");
    std::istringstream record(whours.substr(17));
    for (int n = 1; n <= 8; ++n) {
        std::string label;
        std::string total;
        std::getline(record, label, ',');  // " Wh1" (or "Wh3" behind a blank)
        std::getline(record, total, ',');  // " 1234.5 "
        const double expected = 1440 * tickWh[static_cast<std::size_t>(n)];
        EXPECT_NEAR(std::stod(total), expected, 0.051) << "slot " << n << " in " << whours;
        EXPECT_NEAR(form.state().WattHours[n], expected, expected * 1e-9) << "slot " << n;
    }

    // The rollover cleared the amps' sums but not the watts' of the interval it fell in, so
    // the record of 00:00:30 shows A1 from 50 of its 60 frames, averaged over all 60:
    // (5.2 + 6.1) × 25 / 60 = 4.71, where every other record has 5.65.
    const std::string bz = folder.Read("logs/BZ_2026_03_08.txt");
    const std::size_t second = bz.find("<T>00:00</T>", 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_EQ(bz.substr(second, 47), "<T>00:00</T><L>30</L><V1>12.90</V1><A1>4.7</A1>");
    EXPECT_EQ(bz.find("<A1>4.7</A1>", bz.find('\n', second)), std::string::npos);
}

}  // namespace
}  // namespace brizalog::testing
