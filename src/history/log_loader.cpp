#include <algorithm>
#include <array>
#include <cstdint>
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

// Finds tags in one record line. Every tag the windows look for begins with "<", and a log line
// is dense with them, so the line's "<" positions are kept once per line in buckets by the two
// characters that follow; a search compares only the candidates of its bucket, in line order, and
// so finds the same first occurrence as a plain, case-sensitive search of the whole line.
class LineTags {
public:
    void Index(std::string_view line) {
        m_line = line;
        m_head.fill(-1);
        m_next.clear();
        m_position.clear();
        for (std::size_t p = line.size(); p-- > 0;) {
            if (line[p] == '<') {
                const auto key = Key(line, p);
                m_position.push_back(static_cast<std::uint32_t>(p));
                m_next.push_back(m_head[key]);
                m_head[key] = static_cast<std::int32_t>(m_position.size() - 1);
            }
        }
    }
    // Position of the first occurrence of `tag`, npos when there is none.
    std::size_t Find(std::string_view tag) const {
        if (tag.size() < 3 || tag[0] != '<') {
            return m_line.find(tag);
        }
        for (std::int32_t e = m_head[Key(tag, 0)]; e >= 0;
             e = m_next[static_cast<std::size_t>(e)]) {
            const std::size_t p = m_position[static_cast<std::size_t>(e)];
            if (m_line.size() - p >= tag.size() && m_line.compare(p, tag.size(), tag) == 0) {
                return p;
            }
        }
        return std::string_view::npos;
    }

private:
    static std::size_t Key(std::string_view text, std::size_t p) {
        const auto c1 = p + 1 < text.size() ? static_cast<unsigned char>(text[p + 1]) : 0u;
        const auto c2 = p + 2 < text.size() ? static_cast<unsigned char>(text[p + 2]) : 0u;
        return (c1 * 31u + c2) & 255u;
    }

    std::string_view m_line;
    std::array<std::int32_t, 256> m_head{};
    std::vector<std::int32_t> m_next;
    std::vector<std::uint32_t> m_position;
};

// The number that begins a field's text. Plain decimals of up to 15 digits, which is what the
// logs hold, are read here exactly (a whole number of at most 15 digits divided by a power of ten
// is rounded once, as any correct reading is); everything else goes through the number rule.
double FieldNumber(std::string_view text) {
    std::size_t i = 0;
    const bool negative = i < text.size() && text[i] == '-';
    if (negative) {
        ++i;
    }
    std::int64_t digits = 0;
    int count = 0;
    int fraction = 0;
    bool point = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9') {
            // Past 15 digits the number rule reads the text; the sum stops short of overflowing.
            if (count < 16) {
                digits = digits * 10 + (c - '0');
            }
            ++count;
            fraction += point ? 1 : 0;
        } else if (c == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    const bool plain =
        count > 0 && count <= 15 && (i == text.size() || (text[i] != 'e' && text[i] != 'E'));
    if (!plain || (i < text.size() && text[i] == '.')) {
        return ParseNumber(text);
    }
    static constexpr double kPowers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const double value = static_cast<double>(digits) / kPowers[fraction];
    return negative ? -value : value;
}

// The time of a record: the text between "<T>" and "</T>", found only when the bitwise AND of
// their 1-based positions is not 0. With "<T>" first in the line that means an odd position of
// "</T>", so a time text of odd length: "14:05" passes, "9:05" and "14:05:10" do not. Records
// that fail keep the time "00:00", which no range can hold.
double RecordTime(const LineTags& tags, std::string_view line, bool& valid) {
    const auto position = [&](std::string_view tag) {
        const std::size_t at = tags.Find(tag);
        return at == std::string_view::npos ? 0L : static_cast<long>(at) + 1;
    };
    const long open = position("<T>");
    const long close = position("</T>");
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
    const SeriesRow& row = m_member.series[static_cast<std::size_t>(target)];
    Series(target)[record] =
        row.integerStore ? static_cast<double>(RoundToInteger(value, -32768, 32767)) : value;
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
        LogRecords = LinesOf(ReadWholeFile(path));
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
        LineTags lineTags;

        for (const std::string& line : LogRecords) {
            if (m_member.skipEmptyLines && line.empty()) {
                continue;
            }
            lineTags.Index(line);
            bool valid = false;
            const double time = RecordTime(lineTags, line, valid);
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
                        const std::size_t open = lineTags.Find(tags[s].open);
                        const std::size_t close = lineTags.Find(tags[s].close);
                        if (open != std::string::npos && close != std::string::npos) {
                            const std::size_t from = open + tags[s].open.size();
                            if (close < from) {
                                throw Failure(FailureKind::InvalidArgument);
                            }
                            value = FieldNumber(std::string_view(line).substr(from, close - from));
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
