#include <climits>

#include "acquisition/brizalog.h"
#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"
#include "logging/log_records.h"

namespace brizalog {

namespace {

constexpr std::string_view kWaitingForData = "Waiting for Data";
constexpr std::string_view kNoDataYet = "NO DATA AVAILABLE YET";
constexpr std::string_view kNoValidData = " No valid data recieved : Logged previous data";
constexpr std::string_view kShortIntervalCaution =
    "Caution Logging interval 2 short, Data Overflow may occur";
constexpr std::string_view kInvalidDelay =
    "Invalid delay period, needs to be a number between 1 and 600";

// Logs are hourly at this stored interval and below.
constexpr double kLongestHourlyDelay = 5.0;
// A delay box below this many seconds raises the caution.
constexpr double kShortestQuietDelay = 10.0;
constexpr double kLongestDelay = 600.0;
constexpr double kShortestDelay = 1.0;

// Runs one step of the tick. A step that fails is skipped on its own, without a report, and the
// tick goes on: the logger must never stop for a file it cannot write.
template <typename StepBody>
void Step(StepBody&& body) {
    try {
        body();
    } catch (const Failure&) {
    }
}

// A number too large for a double ("1e400") is no number to the delay box either: Start says so
// rather than failing.
bool IsDelayNumber(const std::string& text) {
    if (!IsNumeric(text)) {
        return false;
    }
    try {
        ParseNumber(text);
    } catch (const Failure&) {
        return false;
    }
    return true;
}

}  // namespace

// The logging tick. Its period is the logging interval; one tick is one interval.
//
// Two interval values live side by side: Timer1's period comes from the delay box at Start,
// while `<L>`, the energy and the hourly file names use the stored LogDelay. A user who types
// another delay and starts logging gets ticks at the typed pace and records that still say
// LogDelay until the settings are saved and loaded again.
void Brizalog::Timer1_Timer() {
    SharedState& s = m_state;
    m_timer2.Enable();
    // The next frame enables Timer3 again, so the midnight rollover runs only while frames come.
    m_timer3.Disable();
    m_model.LogOK.visible = true;
    const bool hourly = !(s.settings.LogDelay > kLongestHourlyDelay);
    const std::string dateTag = DateTag(m_services.clock.Now(), hourly);

    const long frames = s.GoodDataCount;
    if (frames != 0) {
        Step([&] {
            for (int i = 1; i <= 16; ++i) {
                s.SumValue[i] = s.SumValue[i] / static_cast<double>(frames);
                s.AvgValue[i] = s.SumValue[i];
            }
        });
        Step([&] {
            for (int j = 1; j <= 8; ++j) {
                s.SumWatts[j] = s.SumWatts[j] / static_cast<double>(frames);
                s.AvgWatts[j] = s.SumWatts[j];
            }
        });
    } else {
        // An interval without a good frame logs the last averages again, under this tick's time.
        Step([&] {
            for (int i = 1; i <= 16; ++i) {
                s.SumValue[i] = s.AvgValue[i];
            }
            for (int j = 1; j <= 8; ++j) {
                s.SumWatts[j] = s.AvgWatts[j];
            }
        });
        s.ErrorContext = kNoValidData;
    }

    if (s.LoggingActive == 1) {
        // The title changes on the first good frame; unchanged, nothing has ever arrived.
        if (m_model.caption == kWaitingForData) {
            if (!KeepLoggingArmed()) {
                m_services.dialogs.ShowMessage(std::string(kNoDataYet));
                StopLogging();
                return;
            }
            // A device that starts later than the logger, after a power cut or on a slow boot:
            // logging stays started and its first record follows the first frame. Said once.
            if (!m_noDataTold) {
                m_noDataTold = true;
                m_services.dialogs.ShowMessage(std::string(kNoDataYet));
            }
            return;
        }
        s.LastLogTime = HoursMinutes(m_services.clock.Now());
        // An unattended logger also mends what a power cut left: a missing logs folder, a
        // torn last line.
        const bool unattended = KeepLoggingArmed();
        for (const LogFile& file : LogFilesOf(s.settings.SystemType)) {
            // Each file is opened, appended to and closed here; one that cannot be written is
            // passed over and the next one still gets its record.
            Step([&] {
                const std::filesystem::path path =
                    InFolder(m_folder, LogFileLiteral(file.prefix, dateTag));
                const std::string record = LogRecord(file, s.LastLogTime, s);
                m_fileHealth.Write("log", "the log", path, unattended,
                                   [&] { AppendLine(path, record, unattended); });
            });
        }
        if (s.settings.SaveExcel == 1) {
            const std::filesystem::path path = InFolder(m_folder, SpreadsheetLiteral(dateTag));
            Step([&] {
                if (!FileExists(path)) {
                    WriteWholeFile(path, SpreadsheetHeader(s.settings.WSUnits));
                }
            });
            Step([&] {
                const std::string row = SpreadsheetRow(s, LongTime(m_services.clock.Now()));
                m_fileHealth.Write("excel", "the spreadsheet copy", path, false,
                                   [&] { AppendLine(path, row, unattended); });
            });
        }
    }

    // The test reads the box, not LogDelay, on every tick, and nothing here takes the text away.
    Step([&] {
        if (ParseNumber(m_model.delay.text) < kShortestQuietDelay) {
            m_model.ErrorString.text = kShortIntervalCaution;
        }
    });

    // An interval without good data adds no energy, although its record repeats the readings.
    if (s.GoodDataCount > 0) {
        m_model.goodDATAcounter.text = std::to_string(s.GoodDataCount);
        // Each slot is a step of its own: a slot whose energy overflows keeps its total, and
        // the others and the next records go on.
        for (int j = 1; j <= 8; ++j) {
            Step([&] {
                s.WattHours[j] =
                    Finite(s.WattHours[j] + s.SumWatts[j] * s.settings.LogDelay / 3600);
            });
        }
    }

    for (int i = 1; i <= 16; ++i) {
        s.SumValue[i] = 0;
    }
    for (int j = 1; j <= 8; ++j) {
        s.SumWatts[j] = 0;
    }
    s.GoodDataCount = 0;
    m_timer1.Enable();
}

bool Brizalog::KeepLoggingArmed() const {
    return m_state.options.Flag("KeepLoggingArmed");
}

void Brizalog::startMENU_Click() {
    StartLogging();
}

void Brizalog::stopMENU_Click() {
    StopLogging();
}

void Brizalog::StartLogging() {
    Control& delayBox = m_model.delay;
    if (!IsDelayNumber(delayBox.text)) {
        m_services.dialogs.ShowMessage(std::string(kInvalidDelay));
        return;
    }
    if (ParseNumber(delayBox.text) > kLongestDelay) {
        delayBox.text = "600";
    }
    if (ParseNumber(delayBox.text) < kShortestDelay) {
        delayBox.text = "1";
    }
    m_timer1.SetInterval(
        static_cast<int>(RoundToInteger(ParseNumber(delayBox.text) * 1000, 0, INT_MAX)));
    delayBox.enabled = false;
    m_model.setup.enabled = false;
    m_model.startMENU.enabled = false;
    m_model.stopMENU.enabled = true;
    m_state.LoggingActive = 1;
}

// Sums, averages and WattHours go on as they are: Timer1 keeps ticking while logging is stopped.
void Brizalog::StopLogging() {
    m_model.startMENU.enabled = true;
    m_model.setup.enabled = true;
    m_model.delay.enabled = true;
    m_model.stopMENU.enabled = false;
    m_state.LoggingActive = 0;
}

}  // namespace brizalog
