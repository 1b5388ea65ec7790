#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"
#include "history/graph_window.h"

namespace brizalog {

namespace {

constexpr std::string_view kShortLimitMessage = "Over 10,000 records, too many to display.";
constexpr std::string_view kLongLimitMessage =
    "Over 10,000 records, too many to display. Please use a smaller time range. If you set you "
    "logging interval to 10 seconds or more, you wont have this problem in the future. ";

// The lines of a log, split at CR LF. A log ends in CR LF, so the last line is empty.
std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    std::size_t from = 0;
    for (;;) {
        const std::size_t at = text.find(kCrLf, from);
        if (at == std::string_view::npos) {
            lines.emplace_back(text.substr(from));
            return lines;
        }
        lines.emplace_back(text.substr(from, at - from));
        from = at + kCrLf.size();
    }
}

// The time of a record: the text between "<T>" and "</T>", found only when the bitwise AND of
// their 1-based positions is not 0. With "<T>" first in the line that means an odd position of
// "</T>", so a time text of odd length: "14:05" passes, "9:05" and "14:05:10" do not. Records
// that fail keep the time "00:00", which no range can hold.
double RecordTime(std::string_view line, bool& valid) {
    const long open = InStr(line, "<T>");
    const long close = InStr(line, "</T>");
    double time = 0;
    valid = true;
    if ((open & close) != 0) {
        valid = ParseClockTime(Mid(line, open + 3, close - open - 3), time);
    }
    return time;
}

// The tags of one read step, worked out once per read from the channel table as it stands.
struct Tags {
    std::string open;
    std::string close;
};

}  // namespace

void GraphWindow::Store(int target, double value, int record) {
    if (target == kIntervalTarget) {
        LogInterval[record] = m_member.intervalInteger
                                  ? static_cast<double>(RoundToInteger(value, -32768, 32767))
                                  : value;
        return;
    }
    const SeriesSpec& spec = m_member.series[static_cast<std::size_t>(target)];
    Series(target)[record] =
        spec.integerStore ? static_cast<double>(RoundToInteger(value, -32768, 32767)) : value;
}

double GraphWindow::ReadTimeBoxes(std::string_view hours, std::string_view minutes) const {
    double fraction = 0;
    const std::string text = m_controls.Find(hours)->text + ":" + m_controls.Find(minutes)->text;
    if (!ParseClockTime(text, fraction)) {
        throw Failure(FailureKind::TypeMismatch);
    }
    return fraction;
}

void GraphWindow::ReadLog() {
    const double rangeStart = ReadTimeBoxes("Time1h", "Time1m");
    const double rangeFinish = ReadTimeBoxes("Time2h", "Time2m");
    const std::string& fileName = Ctl("FileName").text;
    const std::filesystem::path path = Logs(fileName);

    bool read = true;
    switch (m_member.missingLog) {
        case MissingLog::Message:
            LogFileFound = FileExists(path);
            if (!LogFileFound) {
                m_dialogs.ShowMessage("unknown file error");
                return;
            }
            break;
        case MissingLog::Silent:
            LogFileFound = FileExists(path);
            if (!LogFileFound) {
                return;
            }
            break;
        case MissingLog::KeepOldCount:
            LogFileFound = FileExists(path);
            read = LogFileFound;
            break;
        case MissingLog::AppendFirst:
            // The reader writes: every display makes the log one empty line longer, and makes a
            // missing log. The empty lines fail the time test like any other.
            AppendToFile(path, kCrLf);
            break;
    }

    if (read) {
        LogRecords = SplitLines(ReadWholeFile(path));
        RecordCount = 0;
        ZoomLock = 0;

        std::vector<Tags> tags(m_member.reading.size());
        for (std::size_t s = 0; s < m_member.reading.size(); ++s) {
            const ReadStep& step = m_member.reading[s];
            if (step.kind == ReadStep::Kind::ChannelTag) {
                const std::string& tag = m_state.channels.XMLsoftware[step.channel];
                tags[s] = {"<" + tag + ">", "</" + tag + ">"};
            } else if (step.kind == ReadStep::Kind::Tag) {
                tags[s] = {std::string(step.open), std::string(step.close)};
            }
        }
        std::vector<double> scratch(static_cast<std::size_t>(m_member.scratchCount));

        for (const std::string& line : LogRecords) {
            if (m_member.skipEmptyLines && line.empty()) {
                continue;
            }
            bool valid = false;
            const double time = RecordTime(line, valid);
            if (!valid) {
                continue;
            }
            // Both limits are exclusive: records stamped 00:00 and 23:59 are left out of a day.
            if (!(rangeStart < time && time < rangeFinish)) {
                continue;
            }
            ++RecordCount;
            if (RecordCount > kRecordLimit) {
                // The arrays keep what they got, so the series boxes can still draw them.
                m_dialogs.ShowMessage(std::string(m_member.longLimitMessage ? kLongLimitMessage
                                                                            : kShortLimitMessage));
                return;
            }
            const int k = RecordCount;
            LogTime[k] = time;
            std::copy(m_member.scratchStart.begin(), m_member.scratchStart.end(), scratch.begin());

            for (std::size_t s = 0; s < m_member.reading.size(); ++s) {
                const ReadStep& step = m_member.reading[s];
                switch (step.kind) {
                    case ReadStep::Kind::Tag:
                    case ReadStep::Kind::ChannelTag: {
                        // A field whose tags are not both there leaves its scratch value as it
                        // is, and that value is stored all the same.
                        double& value = scratch[static_cast<std::size_t>(step.scratch)];
                        const std::size_t open = line.find(tags[s].open);
                        const std::size_t close = line.find(tags[s].close);
                        if (open != std::string::npos && close != std::string::npos) {
                            const std::size_t from = open + tags[s].open.size();
                            if (close < from) {
                                throw Failure(FailureKind::InvalidArgument);
                            }
                            value = ParseNumber(std::string_view(line).substr(from, close - from));
                        }
                        Store(step.target, value, k);
                        break;
                    }
                    case ReadStep::Kind::Product:
                        Store(step.target, Series(step.a)[k] * Series(step.b)[k], k);
                        break;
                    case ReadStep::Kind::Difference:
                        Store(step.target, Series(step.a)[k] - Series(step.b)[k], k);
                        break;
                    case ReadStep::Kind::Sum:
                        Store(step.target, Series(step.a)[k] + Series(step.b)[k], k);
                        break;
                    case ReadStep::Kind::PositiveDifference: {
                        const double difference = Series(step.a)[k] - Series(step.b)[k];
                        Store(step.target, difference < 0 ? 0 : difference, k);
                        break;
                    }
                }
            }
        }
    }

    if (m_member.emptyResult == EmptyResult::TodayThenThis) {
        if (loadFlag == 1 && RecordCount == 0) {
            m_dialogs.ShowMessage("No data for today");
            loadFlag = 0;
            return;
        }
        if (RecordCount == 0 && loadFlag == 0) {
            m_dialogs.ShowMessage("No data for this date");
            return;
        }
    } else if (RecordCount == 0) {
        m_dialogs.ShowMessage("No data for that date");
        return;
    }
    ViewStart = 1;
    ViewEnd = RecordCount;
    TimeChart();
}

}  // namespace brizalog
