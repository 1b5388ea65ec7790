#include "catalogue/options.h"

#include <algorithm>
#include <cmath>
#include <system_error>

#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

namespace fs = std::filesystem;

namespace {

// Every choice is off, or empty, where it would change what the program does without it.
const std::vector<OptionRow> kRows = {
    // Meters and the serial line.
    {"ContainMeterFailures", "Meters and logging", "Keep logging when a meter message is cut badly",
     OptionKind::Flag, "0",
     "A CC128 message whose read holds the end of one message and the start of the next no "
     "longer ends the program: that message is skipped, LogOK turns red, the next one decodes."},
    {"KeepLoggingArmed", "Meters and logging", "Start logging again when data comes",
     OptionKind::Flag, "0",
     "Logging stays on when no frame has come by its first tick, and its records begin with "
     "the first frame; a logs folder that has gone is made again; a record after a line cut "
     "short by a power failure starts on a line of its own; text beyond 1 MiB without a frame "
     "end is dropped."},

    // History windows.
    {"ChartScales", "History windows", "Scales around the history charts", OptionKind::Flag, "1",
     "Time and value scales, grid lines and a crosshair around the charts of the history "
     "windows."},

    // Energy and its cost.
    {"EnergyPrice", "Energy", "Price per kWh", OptionKind::Number, "",
     "Empty: the first of the three power rates of setup Hardware, in cents."},
    {"EnergyCurrency", "Energy", "Currency symbol", OptionKind::Text, "$", ""},

    // Publishing to an MQTT broker.
    {"MqttEnabled", "MQTT", "Publish readings to an MQTT broker", OptionKind::Flag, "0", ""},
    {"MqttHost", "MQTT", "Broker host", OptionKind::Text, "localhost", ""},
    {"MqttPort", "MQTT", "Port", OptionKind::Number, "", "Empty: 1883, or 8883 with TLS."},
    {"MqttTls", "MQTT", "Use TLS", OptionKind::Flag, "0", ""},
    {"MqttCaFile", "MQTT", "CA certificate file", OptionKind::FilePath, "", ""},
    {"MqttInsecure", "MQTT", "Do not check the broker's certificate (testing only)",
     OptionKind::Flag, "0", ""},
    {"MqttUser", "MQTT", "User name", OptionKind::Text, "", ""},
    {"MqttPassword", "MQTT", "Password", OptionKind::Secret, "", ""},
    {"MqttSite", "MQTT", "Site name in the topics", OptionKind::Text, "",
     "Empty: made from the personal text of setup Hardware."},
    {"MqttPrefix", "MQTT", "Topic prefix", OptionKind::Text, "brizalog", ""},
    {"MqttDiscovery", "MQTT", "Home Assistant discovery", OptionKind::Flag, "1", ""},
    {"MqttPerFrame", "MQTT", "Publish every frame (at most once a second)", OptionKind::Flag, "0",
     ""},
};

NoticeTeller g_noticeTeller;

// The value of a "<Tag>value</Tag>" line, or false when the line is not one.
bool ReadLine(std::string_view line, std::string& tag, std::string& value) {
    if (line.size() < 5 || line.front() != '<') {
        return false;
    }
    const std::size_t close = line.find('>');
    if (close == std::string_view::npos || close < 2) {
        return false;
    }
    tag = std::string(line.substr(1, close - 1));
    if (tag.find_first_of("</ ") != std::string::npos) {
        return false;
    }
    const std::string end = "</" + tag + ">";
    if (line.size() < close + 1 + end.size() || line.substr(line.size() - end.size()) != end) {
        return false;
    }
    value = std::string(line.substr(close + 1, line.size() - end.size() - close - 1));
    return value.find_first_of("\r\n") == std::string::npos;
}

// The number of `text`, or false when it starts with none ("1e400" is none, too).
bool NumberOf(std::string_view text, double& number) {
    if (!IsNumeric(text)) {
        return false;
    }
    try {
        number = ParseNumber(text);
    } catch (...) {
        return false;
    }
    return std::isfinite(number);
}

}  // namespace

const std::vector<OptionRow>& OptionRows() {
    return kRows;
}

const OptionRow* FindOptionRow(std::string_view tag) {
    const auto it = std::find_if(kRows.begin(), kRows.end(),
                                 [tag](const OptionRow& row) { return row.tag == tag; });
    return it == kRows.end() ? nullptr : &*it;
}

std::string Options::Text(std::string_view tag) const {
    if (const auto it = m_values.find(tag); it != m_values.end()) {
        return it->second;
    }
    const OptionRow* row = FindOptionRow(tag);
    return row != nullptr ? std::string(row->fallback) : std::string();
}

bool Options::Flag(std::string_view tag) const {
    return Number(tag) != 0;
}

double Options::Number(std::string_view tag) const {
    double number = 0;
    if (const auto it = m_values.find(tag); it != m_values.end() && NumberOf(it->second, number)) {
        return number;
    }
    const OptionRow* row = FindOptionRow(tag);
    if (row != nullptr && NumberOf(row->fallback, number)) {
        return number;
    }
    return 0;
}

bool Options::Has(std::string_view tag) const {
    return m_values.find(tag) != m_values.end();
}

void Options::Set(std::string_view tag, std::string value) {
    // A value is one line of the file: a line break would cut it.
    std::erase_if(value, [](char c) { return c == '\r' || c == '\n'; });
    m_values.insert_or_assign(std::string(tag), std::move(value));
}

void Options::Erase(std::string_view tag) {
    if (const auto it = m_values.find(tag); it != m_values.end()) {
        m_values.erase(it);
    }
}

std::string Options::FileText() const {
    std::string text;
    const auto line = [&text](std::string_view tag, std::string_view value) {
        text += '<';
        text += tag;
        text += '>';
        text += value;
        text += "</";
        text += tag;
        text += '>';
        text += kCrLf;
    };
    for (const OptionRow& row : kRows) {
        if (const auto it = m_values.find(row.tag); it != m_values.end()) {
            line(row.tag, it->second);
        }
    }
    for (const auto& [tag, value] : m_values) {
        if (FindOptionRow(tag) == nullptr) {
            line(tag, value);
        }
    }
    return text;
}

bool Options::HoldsSecret() const {
    return std::any_of(m_values.begin(), m_values.end(), [](const auto& entry) {
        const OptionRow* row = FindOptionRow(entry.first);
        return row != nullptr && row->kind == OptionKind::Secret && !entry.second.empty();
    });
}

Options ParseOptions(std::string_view text) {
    Options options;
    std::string tag;
    std::string value;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (ReadLine(line, tag, value)) {
            options.Set(tag, value);
        }
        start = end + 1;
    }
    return options;
}

Options ReadOptions(const fs::path& folder) {
    const fs::path path = InFolder(folder, kOptionsFile);
    std::error_code error;
    // A folder, a device or a link to one under the file's name is no options file.
    if (!fs::is_regular_file(path, error)) {
        return {};
    }
    try {
        return ParseOptions(ReadWholeFile(path));
    } catch (...) {
        return {};
    }
}

void WriteOptions(const Options& options, const fs::path& folder) {
    const fs::perms ownerOnly = fs::perms::owner_read | fs::perms::owner_write;
    WriteWholeFile(InFolder(folder, kOptionsFile), options.FileText(),
                   options.HoldsSecret() ? ownerOnly : fs::perms::unknown);
}

bool OptionsReadableByOthers(const fs::path& folder) {
    const fs::path path = InFolder(folder, kOptionsFile);
    std::error_code error;
    const fs::perms perms = fs::status(path, error).permissions();
    if (error || !ReadOptions(folder).HoldsSecret()) {
        return false;
    }
    return (perms & (fs::perms::group_read | fs::perms::others_read)) != fs::perms::none;
}

void SetNoticeTeller(NoticeTeller teller) {
    g_noticeTeller = std::move(teller);
}

void TellNotice(std::string_view source, const std::string& text) {
    if (g_noticeTeller) {
        g_noticeTeller(source, text);
    }
}

}  // namespace brizalog
