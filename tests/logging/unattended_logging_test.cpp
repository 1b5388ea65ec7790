#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "catalogue/files.h"
#include "catalogue/options.h"
#include "logging/logging_rig.h"

namespace brizalog::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLog = "logs/BZ_2026_03_07.txt";

// The notices told while it lives, as "source: text".
struct NoticeLog {
    std::vector<std::string> lines;
    NoticeLog() {
        SetNoticeTeller([this](std::string_view source, const std::string& text) {
            lines.push_back(std::string(source) + ": " + text);
        });
    }
    ~NoticeLog() { SetNoticeTeller(nullptr); }
    NoticeLog(const NoticeLog&) = delete;
    NoticeLog& operator=(const NoticeLog&) = delete;
};

// A rig whose logging is started, unattended (the headless logger's choice) or not.
struct Rig : LoggingRig {
    explicit Rig(bool unattended, int systemType = 1, double logDelay = 30)
        : LoggingRig(systemType, logDelay) {
        s.options.SetFlag("KeepLoggingArmed", unattended);
    }
    void Tick(int minute) {
        At(2026, 3, 7, 14, minute, 0);
        s.GoodDataCount = 1;
        FramesWatts(1, 1, 130);
        form.Timer1_Timer();
    }
};

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t from = 0;
    for (std::size_t end; (end = text.find("\r\n", from)) != std::string::npos; from = end + 2) {
        lines.push_back(text.substr(from, end - from));
    }
    if (from < text.size()) {
        lines.push_back(text.substr(from));  // a torn last line
    }
    return lines;
}

// Each line holds at most one record: one "<T>" at its start, and one "</WS>" at its end.
void ExpectNoLineHoldsTwoRecords(const std::string& text) {
    for (const std::string& line : Lines(text)) {
        const std::size_t first = line.find("<T>");
        EXPECT_EQ(line.find("<T>", first == std::string::npos ? 0 : first + 1), std::string::npos)
            << line;
    }
}

// A box whose device starts after it: with logging kept armed, the first tick without data is
// told once and leaves logging on, and records begin with the first frame; without, logging
// stops at that tick, as on the desktop.
TEST(UnattendedLogging, ADeviceThatStartsLateIsLoggedFromItsFirstFrameOnlyWhenArmed) {
    for (const bool armed : {true, false}) {
        SCOPED_TRACE(armed ? "armed" : "desktop");
        Rig rig(armed, 1, 10);
        rig.form.model().caption = "Waiting for Data";
        rig.form.startMENU_Click();
        rig.timers.Advance(20'000);  // two ticks before the device speaks
        rig.serial.Queue("[<V1>13</V1>]");
        rig.form.MSComm1_OnComm();
        ASSERT_NE(rig.form.model().caption, "Waiting for Data");
        rig.timers.Advance(10'000);

        EXPECT_EQ(rig.dialogs.messages, std::vector<std::string>{"NO DATA AVAILABLE YET"});
        EXPECT_EQ(rig.s.LoggingActive, armed ? 1 : 0);
        EXPECT_EQ(Lines(rig.folder.Exists(kLog) ? rig.Read(kLog) : "").size(), armed ? 1u : 0u);
    }
}

// What a power cut leaves at the end of a log: the unattended logger starts its record on a
// line of its own; the desktop's plain append follows the torn piece as it always has.
TEST(UnattendedLogging, ARecordAfterATornLineStartsOnALineOfItsOwnWhenUnattended) {
    struct Case {
        std::string before;
        bool unattended;
        std::size_t lines;
    };
    const Case cases[] = {
        {"<T>14:00</T><L>30</L><V1>12.", true, 2},     {"<T>14:00</T><L>30</L><V1>12.\r", true, 2},
        {"<T>14:00</T><L>30</L><V1>12.\r\n", true, 2}, {"", true, 1},
        {"<T>14:00</T><L>30</L><V1>12.", false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.before + (c.unattended ? " unattended" : " desktop"));
        Rig rig(c.unattended);
        rig.folder.Write(kLog, c.before);
        rig.form.startMENU_Click();
        rig.Tick(1);
        const std::string log = rig.Read(kLog);
        EXPECT_EQ(Lines(log).size(), c.lines);
        EXPECT_EQ(log.substr(log.size() - 2), "\r\n");
        if (c.unattended) {
            ExpectNoLineHoldsTwoRecords(log);
        }
    }
}

// A disk that refuses appends while `g_full` is set, as a full one does.
bool g_full = false;
std::error_code FullDiskAppend(const fs::path& path, std::string_view text, bool) {
    if (g_full) {
        return std::make_error_code(std::errc::no_space_on_device);
    }
    std::ofstream out(path, std::ios::binary | std::ios::app);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    return out ? std::error_code() : std::make_error_code(std::errc::io_error);
}

// A full disk under each file of the tick and the rollover: the first refusal is told with the
// path and the reason, nothing more while it lasts, and the first write after it is told too;
// every line that did get written is one whole record.
TEST(UnattendedLogging, AFullDiskIsToldOnceWithItsPathAndOnceWhenItHasRoom) {
    for (const bool unattended : {true, false}) {
        SCOPED_TRACE(unattended ? "unattended" : "desktop");
        Rig rig(unattended);
        rig.s.settings.SaveExcel = 1;
        rig.form.startMENU_Click();
        NoticeLog notices;
        rig.Tick(1);
        SetPlatformFiles({nullptr, FullDiskAppend, nullptr, nullptr});
        g_full = true;
        rig.Tick(2);
        rig.Tick(3);
        rig.At(2026, 3, 8, 0, 0, 3);
        EXPECT_THROW(rig.form.Timer3_Timer(), Failure);
        g_full = false;
        rig.Tick(4);
        rig.At(2026, 3, 8, 0, 0, 8);
        rig.form.Timer3_Timer();
        SetPlatformFiles({});

        const std::string reason = std::make_error_code(std::errc::no_space_on_device).message();
        const fs::path logs = rig.folder.path() / "logs";
        const fs::path sheet = rig.folder.path() / "excel/2026_03_07.xls";
        EXPECT_EQ(
            notices.lines,
            (std::vector<std::string>{
                "log: the log " + (logs / "BZ_2026_03_07.txt").string() +
                    " cannot be written: " + reason,
                "excel: the spreadsheet copy " + sheet.string() + " cannot be written: " + reason,
                "whours: the watt-hour record " + (logs / "Whours.txt").string() +
                    " cannot be written: " + reason,
                "log: the log " + (logs / "BZ_2026_03_07.txt").string() + " is written again",
                "excel: the spreadsheet copy " + sheet.string() + " is written again",
                "whours: the watt-hour record " + (logs / "Whours.txt").string() +
                    " is written again",
            }));
        EXPECT_EQ(Lines(rig.Read(kLog)).size(), 2u);
        ExpectNoLineHoldsTwoRecords(rig.Read(kLog));
        EXPECT_TRUE(rig.dialogs.messages.empty());
    }
}

// Of the three logs of system 8, one on a device that is always full: it is told once, and the
// other two, written at every tick, do not make it look recovered.
TEST(UnattendedLogging, OneLogOfThreeThatCannotBeWrittenIsToldOnceWhileTheOthersGoOn) {
    Rig rig(true, 8);
    rig.form.startMENU_Click();
    NoticeLog notices;
    fs::create_symlink("/dev/full", rig.folder.path() / "logs/RE_2026_03_07.txt");
    for (int minute = 1; minute <= 3; ++minute) {
        rig.Tick(minute);
    }
    ASSERT_EQ(notices.lines.size(), 1u);
    EXPECT_NE(notices.lines[0].find("RE_2026_03_07.txt cannot be written"), std::string::npos);
    EXPECT_EQ(Lines(rig.Read(kLog)).size(), 3u);
}

// A logs folder that has gone is made again by the unattended logger, which says so; the
// desktop passes over it until the user makes it again.
TEST(UnattendedLogging, AVanishedLogsFolderIsMadeAgainOnlyWhenUnattended) {
    for (const bool unattended : {true, false}) {
        SCOPED_TRACE(unattended ? "unattended" : "desktop");
        Rig rig(unattended);
        rig.form.startMENU_Click();
        NoticeLog notices;
        rig.Tick(1);
        fs::remove_all(rig.folder.path() / "logs");
        rig.Tick(2);
        EXPECT_EQ(rig.folder.Exists(kLog), unattended);
        ASSERT_EQ(notices.lines.size(), 1u);
        EXPECT_NE(notices.lines[0].find(unattended ? "made the missing folder" : "cannot be"),
                  std::string::npos)
            << notices.lines[0];
    }
}

// Noise that never holds a frame end: the unattended intake keeps its newest text within the
// bound and says so once; a frame that follows is decoded as ever. The desktop keeps it all.
TEST(UnattendedLogging, TextWithoutAFrameEndIsHeldToABoundOnlyWhenUnattended) {
    for (const bool unattended : {true, false}) {
        SCOPED_TRACE(unattended ? "unattended" : "desktop");
        Rig rig(unattended, 3);
        NoticeLog notices;
        const std::string noise(4096, '~');
        const std::size_t reads = (unattended ? 10u : 1u) * 1024 * 1024 / noise.size();
        for (std::size_t i = 0; i < reads; ++i) {
            rig.serial.Queue(noise);
            rig.form.MSComm1_OnComm();
            ASSERT_LE(rig.form.ReceiveBuffer().capacity(), 2u * 1024 * 1024);
        }
        EXPECT_EQ(notices.lines.size(), unattended ? 1u : 0u);
        if (!unattended) {
            EXPECT_EQ(rig.form.ReceiveBuffer().size(), reads * noise.size());
        }
        rig.serial.Queue("<msg><tmpr>21.5</tmpr><ch1><watts>00345</watts></ch1></msg>");
        rig.form.MSComm1_OnComm();
        EXPECT_EQ(rig.form.ReceiveBuffer(), "");
        EXPECT_DOUBLE_EQ(rig.s.RawValue[18], 345);
    }
}

// A huge frame gives its memory back once the next, ordinary one has come.
TEST(UnattendedLogging, AHugeFrameDoesNotKeepItsMemory) {
    Rig rig(false);
    rig.serial.Queue("[<V1>" + std::string(4 * 1024 * 1024, '1') + "</V1>]");
    rig.form.MSComm1_OnComm();
    rig.serial.Queue("<V1>13</V1>]");
    rig.form.MSComm1_OnComm();
    const std::string* texts[] = {&rig.form.ReceiveBuffer(), &rig.form.LoggerFrame(),
                                  &rig.s.LastFrame, &rig.form.model().Label2.text};
    for (const std::string* text : texts) {
        EXPECT_LT(text->capacity(), 64u * 1024);
    }
}

}  // namespace
}  // namespace brizalog::testing
