#include <gtest/gtest.h>

#include "acquisition/status_line.h"

namespace brizalog {
namespace {

// A moment `seconds` after 14:05:00 on the monotonic clock and the wall clock alike.
Moment At(double seconds) {
    return {seconds,
            AddMilliseconds({2026, 3, 7, 14, 5, 0, 0}, static_cast<long long>(seconds * 1000))};
}

TEST(StatusLine, NamesThePortAndTheDeviceBehindIt) {
    const struct {
        const char* device;
        const char* shown;
    } cases[] = {
        {"/dev/ttyUSB0", "COM3 \u2192 /dev/ttyUSB0"},
        {"/dev/pts/7", "COM3 \u2192 simulator"},
        {"", "COM3 \u2192 no device"},
    };
    for (const auto& c : cases) {
        StatusLine status(At(0));
        status.SetPort(3, c.device);
        EXPECT_EQ(status.PortText(), c.shown);
    }
}

TEST(StatusLine, CountsFramesPerSecondOverTheLastTenSeconds) {
    StatusLine status(At(0));
    EXPECT_EQ(status.RateText(0.5), "0.0 frames/s");
    EXPECT_EQ(status.LastFrameText(), "no frame yet");
    // Two frames a second for 20 s, then silence.
    for (int i = 1; i <= 40; ++i) {
        status.Frames(1, At(i * 0.5));
        if (i == 8) {
            EXPECT_EQ(status.RateText(4.0), "2.0 frames/s") << "eight frames in the first 4 s";
        }
    }
    EXPECT_EQ(status.RateText(20.2), "2.0 frames/s");
    EXPECT_EQ(status.LastFrameText(), "last frame 14:05:20");
    EXPECT_EQ(status.RateText(25.2), "1.0 frames/s") << "half the window is silent";
    EXPECT_EQ(status.RateText(31.0), "0.0 frames/s");
    // A thousand frames a second keep a bounded record.
    for (int i = 0; i < 20000; ++i) {
        status.Frames(1, At(100 + i * 0.001));
    }
    EXPECT_EQ(status.RateText(120.0), "1000.0 frames/s");
}

TEST(StatusLine, ReadingsGoStaleAfterThreeIntervalsAndAtLeastTenSeconds) {
    const struct {
        int logDelay;
        double silence;
        bool stale;
    } cases[] = {
        {1, 9.9, false}, {1, 10.0, true},    {2, 9.0, false},   {5, 14.9, false},
        {5, 15.0, true}, {60, 179.0, false}, {60, 180.0, true},
    };
    for (const auto& c : cases) {
        StatusLine status(At(0));
        status.Frames(1, At(3));
        const auto note = status.StaleNote(3 + c.silence, c.logDelay);
        EXPECT_EQ(note.has_value(), c.stale) << c.logDelay << " s, silent " << c.silence << " s";
        if (note) {
            EXPECT_EQ(*note, "no data since 14:05:03");
        }
        status.Frames(1, At(3 + c.silence));
        EXPECT_FALSE(status.StaleNote(3 + c.silence, c.logDelay)) << "the next frame restores";
    }
    StatusLine silentFromStart(At(0));
    EXPECT_EQ(silentFromStart.StaleNote(12, 1), "no data since 14:05:00");
}

TEST(StatusLine, AnUnpluggedDeviceLoggingAndNotices) {
    StatusLine status(At(0));
    EXPECT_EQ(status.UnpluggedText(), "");
    status.DeviceLost(At(7));
    status.DeviceLost(At(9));  // still the same absence
    EXPECT_EQ(status.UnpluggedText(), "device unplugged \u2014 waiting since 14:05:07");
    status.DeviceBack();
    EXPECT_EQ(status.UnpluggedText(), "");

    EXPECT_EQ(status.LoggingText(), "not logging");
    status.SetLogging(true, {"BZ_2026_03_07.txt"});
    EXPECT_EQ(status.LoggingText(), "logging to BZ_2026_03_07.txt");
    status.SetLogging(true, {"BZ_2026_03_07.txt", "RE_2026_03_07.txt", "ML_2026_03_07.txt"});
    EXPECT_EQ(status.LoggingText(), "logging to BZ_2026_03_07.txt + 2 more");

    status.SetNotice("mqtt", "broker unreachable");
    status.SetNotice("log", "cannot write the day's log");
    status.SetNotice("mqtt", "connected");
    EXPECT_EQ(status.Notices(),
              (std::vector<std::string>{"log: cannot write the day's log", "mqtt: connected"}));
    status.SetNotice("log", "");
    status.SetNotice("never", "");
    EXPECT_EQ(status.Notices(), std::vector<std::string>{"mqtt: connected"});
}

}  // namespace
}  // namespace brizalog
