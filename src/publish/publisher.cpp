#include "publish/publisher.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "catalogue/system_types.h"
#include "catalogue/version.h"

namespace brizalog {

namespace {

constexpr std::string_view kDiscoveryPrefix = "homeassistant/sensor/";
constexpr std::string_view kStatusKey = "status";

// How each quantity is told to Home Assistant. An empty class or unit is left out of the
// configuration. The decimals keep the payload short; every one is finer than the daily log's.
struct QuantityInfo {
    std::string_view deviceClass;
    std::string_view unit;
    std::string_view stateClass;
    int decimals;
};

// Indexed by Quantity. Turbine speed has no class: Home Assistant's frequency takes hertz only.
// The day's energy returns to 0 after midnight, which total_increasing takes as a meter reset,
// so the energy dashboard counts each day from 0.
constexpr std::array<QuantityInfo, 8> kQuantities{{
    {"current", "A", "measurement", 2},
    {"voltage", "V", "measurement", 2},
    {"wind_speed", "", "measurement", 1},  // the unit is the WSUnits setting
    {"", "rpm", "measurement", 0},
    {"", "", "measurement", 2},
    {"power", "W", "measurement", 1},
    {"energy", "Wh", "total_increasing", 2},
    {"temperature",
     "\xC2\xB0"
     "C",
     "measurement", 1},
}};

const QuantityInfo& InfoOf(Quantity q) {
    return kQuantities[static_cast<std::size_t>(q)];
}

// Wind units Home Assistant accepts for its wind_speed class; another WSUnits text is published
// as a plain number with that unit and no class.
constexpr std::array<std::string_view, 6> kWindUnits{"m/s", "km/h", "mph",
                                                     "kn",  "ft/s", "Beaufort"};

// Which readings each system type shows on its panel: channels, power slots (each with its day's
// energy), and the RawValue indexes of the meter's temperatures.
struct SystemReadings {
    std::vector<int> channels;
    std::vector<int> slots;
    std::vector<int> temperatures;
};

const std::array<SystemReadings, kSystemTypeCount>& ReadingsBySystem() {
    static const std::array<SystemReadings, kSystemTypeCount> table{{
        {{9, 1, 13, 12}, {1}, {}},
        {{9, 1, 2, 13, 14, 12}, {1, 2}, {}},
        {{9, 1, 2, 3, 4, 13, 14, 12}, {1, 2, 3, 4}, {}},
        {{}, {2, 3, 4}, {17}},
        {{}, {2, 3, 4, 6, 7, 8}, {17, 21}},
        {{9, 1, 2, 3, 4}, {1, 2, 3, 4}, {}},
        {{9, 1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}, {}},
        {{9, 10, 11, 1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}, {}},
        {{9, 10, 11, 1, 2, 3, 4, 5, 6, 7, 8, 12, 13, 14, 15, 16}, {1, 2, 3, 4, 5, 6, 7, 8}, {}},
    }};
    return table;
}

// The catalogue's default tag of channels 1..16, in lower case, as the reading's key.
constexpr std::array<std::string_view, 17> kChannelKeys{"",   "a1", "a2", "a3", "a4", "a5",
                                                        "a6", "a7", "a8", "v1", "v2", "v3",
                                                        "ws", "r1", "r2", "p1", "p2"};

Quantity QuantityOfChannel(int channel) {
    if (channel <= 8) {
        return Quantity::Current;
    }
    if (channel <= 11) {
        return Quantity::Voltage;
    }
    if (channel == 12) {
        return Quantity::WindSpeed;
    }
    return channel <= 14 ? Quantity::Speed : Quantity::Pulses;
}

// Channel names are single-byte text of the Latin-1 set; MQTT and JSON want UTF-8.
void AppendUtf8(std::string& out, std::string_view latin1) {
    for (const char c : latin1) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out += c;
        } else {
            out += static_cast<char>(0xC0 | (byte >> 6));
            out += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
}

void AppendJsonString(std::string& out, std::string_view text, bool latin1) {
    out += '"';
    std::string utf8;
    if (latin1) {
        AppendUtf8(utf8, text);
        text = utf8;
    }
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    static constexpr char kHex[] = "0123456789abcdef";
                    out += "\\u00";
                    out += kHex[(c >> 4) & 0xF];
                    out += kHex[c & 0xF];
                } else {
                    out += c;
                }
        }
    }
    out += '"';
}

void AppendField(std::string& out, std::string_view name, std::string_view value,
                 bool latin1 = false) {
    if (out.size() > 1) {
        out += ',';
    }
    AppendJsonString(out, name, false);
    out += ':';
    AppendJsonString(out, value, latin1);
}

// A plain decimal number with at most `decimals` places, trailing zeros dropped: "24.3", "0",
// "-1.25". False for a value that is not finite.
bool FormatValue(double value, int decimals, std::string& out) {
    if (!std::isfinite(value)) {
        return false;
    }
    std::array<char, 64> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, decimals);
    if (error != std::errc{}) {
        return false;
    }
    char* first = buffer.data();
    if (decimals > 0) {
        while (end[-1] == '0') {
            --end;
        }
        if (end[-1] == '.') {
            --end;
        }
    }
    if (end - first == 2 && first[0] == '-' && first[1] == '0') {
        ++first;  // "-0" of a tiny negative reading
    }
    out.assign(first, end);
    return true;
}

bool IsWildcardOrSlash(char c) {
    return c == '+' || c == '#' || c == '/';
}

double DaySeconds(const LocalDateTime& t) {
    // Days from the civil date, so that the once-a-second rule holds across midnight.
    return static_cast<double>(DaysFromCivil(t.year, t.month, t.day)) * 86400.0 +
           SecondsSinceMidnight(t);
}

}  // namespace

std::string Slug(std::string_view text) {
    std::string slug;
    slug.reserve(text.size());
    bool gap = false;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9')) {
            if (gap && !slug.empty()) {
                slug += '_';
            }
            slug += c;
            gap = false;
        } else if (byte >= 'A' && byte <= 'Z') {
            if (gap && !slug.empty()) {
                slug += '_';
            }
            slug += static_cast<char>(byte - 'A' + 'a');
            gap = false;
        } else {
            gap = true;
        }
    }
    return slug;
}

PublishSettings PublishSettingsFrom(const Options& options, const Settings& settings) {
    PublishSettings s;
    s.enabled = options.Flag("MqttEnabled");
    s.host = options.Text("MqttHost");
    s.tls = options.Flag("MqttTls");
    const double port = options.Number("MqttPort");
    s.port = port >= 1 && port <= 65535 ? static_cast<int>(port) : (s.tls ? 8883 : 1883);
    s.caFile = options.Text("MqttCaFile");
    s.insecure = options.Flag("MqttInsecure");
    s.user = options.Text("MqttUser");
    s.password = options.Text("MqttPassword");
    s.site = Slug(options.Text("MqttSite"));
    if (s.site.empty()) {
        s.site = Slug(settings.PersonalString);
    }
    if (s.site.empty()) {
        s.site = "site";
    }
    std::string prefix;
    for (const char c : options.Text("MqttPrefix")) {
        if (c != '+' && c != '#') {
            prefix += c;
        }
    }
    const auto first = std::find_if_not(prefix.begin(), prefix.end(), IsWildcardOrSlash);
    const auto last = std::find_if_not(prefix.rbegin(), prefix.rend(), IsWildcardOrSlash).base();
    s.prefix = first < last ? std::string(first, last) : std::string("brizalog");
    s.discovery = options.Flag("MqttDiscovery");
    s.perFrame = options.Flag("MqttPerFrame");
    return s;
}

std::vector<PublishedReading> PublishedReadings(const SharedState& state,
                                                const PublishSettings& settings) {
    std::vector<PublishedReading> readings;
    const int type = state.settings.SystemType;
    if (!IsKnownSystemType(type)) {
        return readings;
    }
    const ChannelTable& table = state.channels;
    const auto shown = [&](int n) {
        return table.enableDISPLAY[n] == 1 && table.HARDWAREenabled[n] == 1;
    };
    const std::string base = settings.prefix + "/" + settings.site + "/";
    const auto add = [&](std::string key, std::string name, Quantity q, int index) {
        std::string topic = base + Slug(name);
        // Two readings under one name ("channel name" is every new channel's) keep apart by key.
        const bool taken = std::any_of(readings.begin(), readings.end(), [&](const auto& r) {
            return r.stateTopic.compare(0, topic.size(), topic) == 0 &&
                   r.stateTopic.size() == topic.size() + 6;
        });
        if (topic.size() == base.size()) {
            topic += key;
        } else if (taken) {
            topic += "_" + key;
        }
        topic += "/state";
        readings.push_back({std::move(key), std::move(name), std::move(topic), q, index});
    };
    const SystemReadings& wanted = ReadingsBySystem()[static_cast<std::size_t>(type)];
    for (const int n : wanted.channels) {
        if (shown(n)) {
            add(std::string(kChannelKeys[static_cast<std::size_t>(n)]), table.ChannelName[n],
                QuantityOfChannel(n), n);
        }
    }
    for (const int slot : wanted.slots) {
        if (shown(slot + 16)) {
            add("w" + std::to_string(slot), table.ChannelName[slot + 16], Quantity::Power, slot);
        }
    }
    for (const int slot : wanted.slots) {
        if (shown(slot + 16)) {
            add("wh" + std::to_string(slot), table.ChannelName[slot + 16] + " today",
                Quantity::Energy, slot);
        }
    }
    int sensor = 0;
    for (const int raw : wanted.temperatures) {
        ++sensor;
        add("t" + std::to_string(sensor),
            sensor == 1 ? std::string("temperature") : "temperature " + std::to_string(sensor),
            Quantity::Temperature, raw);
    }
    return readings;
}

const std::vector<std::string>& AllReadingKeys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> all;
        for (int n = 1; n <= 16; ++n) {
            all.emplace_back(kChannelKeys[static_cast<std::size_t>(n)]);
        }
        for (int slot = 1; slot <= 8; ++slot) {
            all.push_back("w" + std::to_string(slot));
            all.push_back("wh" + std::to_string(slot));
        }
        all.emplace_back("t1");
        all.emplace_back("t2");
        return all;
    }();
    return keys;
}

void Publisher::Configure(const SharedState& state) {
    const PublishSettings settings = PublishSettingsFrom(state.options, state.settings);
    if (m_configured && settings == m_settings) {
        return;
    }
    // Configurations of the old site or with discovery now off are taken back while the link
    // still talks to the old broker.
    if (m_configured && m_settings.enabled && m_settings.discovery &&
        (!settings.enabled || !settings.discovery || settings.site != m_settings.site)) {
        for (const PublishedReading& reading : m_layout) {
            m_link.Send({ConfigTopic(reading.key), "", MessageKind::Config});
        }
        m_link.Send({ConfigTopic(kStatusKey), "", MessageKind::Config});
    }
    m_settings = settings;
    m_configured = true;
    m_freshSession = true;
    m_layout.clear();
    m_lastFrameSecond = -1;
    m_link.Configure(m_settings);
}

void Publisher::AfterTick(const SharedState& state, const std::string& status) {
    Publish(state, status, ValuesOf::Tick);
}

void Publisher::AfterFrame(const SharedState& state, const std::string& status,
                           const LocalDateTime& now) {
    if (!m_settings.enabled || !m_settings.perFrame) {
        return;
    }
    const double second = DaySeconds(now);
    // A clock set back starts the count afresh rather than silencing the frames for the gap.
    if (m_lastFrameSecond >= 0 && second >= m_lastFrameSecond && second - m_lastFrameSecond < 1.0) {
        return;
    }
    m_lastFrameSecond = second;
    Publish(state, status, ValuesOf::Frame);
}

void Publisher::Publish(const SharedState& state, const std::string& status, ValuesOf values) {
    if (!m_settings.enabled) {
        return;
    }
    Build(state, status, values);
    for (MqttMessage& message : m_messages) {
        m_link.Send(std::move(message));
    }
}

std::string Publisher::ConfigTopic(std::string_view key) const {
    std::string topic(kDiscoveryPrefix);
    topic += "brizalog_";
    topic += m_settings.site;
    topic += '/';
    topic += key;
    topic += "/config";
    return topic;
}

std::string Publisher::ConfigPayload(const PublishedReading& reading,
                                     const SharedState& state) const {
    const std::string node = "brizalog_" + m_settings.site;
    std::string json = "{";
    AppendField(json, "name", reading.name, true);
    AppendField(json, "unique_id", node + "_" + reading.key);
    AppendField(json, "object_id", node + "_" + reading.key);
    AppendField(json, "state_topic", reading.stateTopic);
    AppendField(json, "availability_topic", m_settings.AvailabilityTopic());
    if (reading.key != kStatusKey) {
        const QuantityInfo& info = InfoOf(reading.quantity);
        std::string_view unit = info.unit;
        std::string_view deviceClass = info.deviceClass;
        if (reading.quantity == Quantity::WindSpeed) {
            unit = state.settings.WSUnits;
            if (std::find(kWindUnits.begin(), kWindUnits.end(), unit) == kWindUnits.end()) {
                deviceClass = {};
            }
        }
        if (!unit.empty()) {
            // WSUnits is text of the settings file, Latin-1; the table's units are UTF-8.
            AppendField(json, "unit_of_measurement", unit, reading.quantity == Quantity::WindSpeed);
        }
        if (!deviceClass.empty()) {
            AppendField(json, "device_class", deviceClass);
        }
        AppendField(json, "state_class", info.stateClass);
    }
    json += ",\"device\":{\"identifiers\":[";
    AppendJsonString(json, node, false);
    json += "]";
    std::string device = "{";
    AppendField(device, "name", state.settings.PersonalString, true);
    AppendField(device, "model", MenuText(SystemMenu::setsystem, state.settings.SystemType));
    std::string version = VersionText();
    if (version.rfind("Version ", 0) == 0) {
        version.erase(0, 8);
    }
    AppendField(device, "sw_version", version);
    AppendField(device, "manufacturer", "Brizalog");
    json += ',';
    json.append(device, 1, std::string::npos);
    json += "}}";
    return json;
}

void Publisher::BuildLayoutMessages(const SharedState& state) {
    const bool fresh = m_freshSession;
    const bool deviceChanged = state.settings.PersonalString != m_deviceName ||
                               state.settings.SystemType != m_deviceModel ||
                               state.settings.WSUnits != m_windUnits;
    if (!fresh && !deviceChanged && m_scratch == m_layout) {
        return;
    }
    if (fresh) {
        m_messages.push_back({m_settings.AvailabilityTopic(), kOnline, MessageKind::Availability});
    }
    for (const PublishedReading& old : m_layout) {
        const auto now = std::find_if(m_scratch.begin(), m_scratch.end(),
                                      [&](const auto& r) { return r.key == old.key; });
        if (now == m_scratch.end() && m_settings.discovery) {
            m_messages.push_back({ConfigTopic(old.key), "", MessageKind::Config});
        }
        // A retained value under a topic nobody reads any more would be shown to every new
        // subscriber for ever.
        if (now == m_scratch.end() || now->stateTopic != old.stateTopic) {
            m_messages.push_back({old.stateTopic, "", MessageKind::State});
        }
    }
    if (m_settings.discovery) {
        if (fresh) {
            // Whatever an earlier run left of another layout goes; a removal of a configuration
            // that was never there costs the broker nothing.
            for (const std::string& key : AllReadingKeys()) {
                const bool kept = std::any_of(m_scratch.begin(), m_scratch.end(),
                                              [&](const auto& r) { return r.key == key; });
                if (!kept) {
                    m_messages.push_back({ConfigTopic(key), "", MessageKind::Config});
                }
            }
        }
        for (const PublishedReading& reading : m_scratch) {
            const auto old = std::find(m_layout.begin(), m_layout.end(), reading);
            if (fresh || deviceChanged || old == m_layout.end()) {
                m_messages.push_back(
                    {ConfigTopic(reading.key), ConfigPayload(reading, state), MessageKind::Config});
            }
        }
        if (fresh || deviceChanged) {
            PublishedReading status{std::string(kStatusKey), "status",
                                    m_settings.prefix + "/" + m_settings.site + "/status",
                                    Quantity::Current, 0};
            m_messages.push_back(
                {ConfigTopic(kStatusKey), ConfigPayload(status, state), MessageKind::Config});
        }
    }
    m_layout = m_scratch;
    m_deviceName = state.settings.PersonalString;
    m_deviceModel = state.settings.SystemType;
    m_windUnits = state.settings.WSUnits;
    m_freshSession = false;
}

bool Publisher::SameLayoutInputs(const SharedState& state) const {
    if (m_freshSession || state.settings.SystemType != m_deviceModel ||
        state.settings.PersonalString != m_deviceName || state.settings.WSUnits != m_windUnits) {
        return false;
    }
    const ChannelTable& t = state.channels;
    for (int n = 1; n <= 24; ++n) {
        const std::uint8_t shown = t.enableDISPLAY[n] == 1 && t.HARDWAREenabled[n] == 1;
        if (shown != m_shownFlags[static_cast<std::size_t>(n)] ||
            (shown != 0 && t.ChannelName[n] != m_names[static_cast<std::size_t>(n)])) {
            return false;
        }
    }
    return true;
}

void Publisher::KeepLayoutInputs(const SharedState& state) {
    const ChannelTable& t = state.channels;
    for (int n = 1; n <= 24; ++n) {
        const auto i = static_cast<std::size_t>(n);
        m_shownFlags[i] = t.enableDISPLAY[n] == 1 && t.HARDWAREenabled[n] == 1;
        m_names[i] = t.ChannelName[n];
    }
    m_statusTopic = m_settings.prefix + "/" + m_settings.site + "/status";
}

const std::vector<MqttMessage>& Publisher::Build(const SharedState& state,
                                                 const std::string& status, ValuesOf values) {
    m_messages.clear();
    // The layout changes with a setup window or the Options, rarely; a tick of an unchanged one
    // only formats the values.
    if (!SameLayoutInputs(state)) {
        m_scratch = PublishedReadings(state, m_settings);
        BuildLayoutMessages(state);
        KeepLayoutInputs(state);
    }
    const bool tick = values == ValuesOf::Tick;
    for (const PublishedReading& reading : m_layout) {
        double value = 0;
        switch (reading.quantity) {
            case Quantity::Power:
                value = tick ? state.AvgWatts[reading.index] : state.ChannelWatts[reading.index];
                break;
            case Quantity::Energy:
                value = state.WattHours[reading.index];
                break;
            case Quantity::Temperature:
                value = state.RawValue[reading.index];
                break;
            default:
                value = tick ? state.AvgValue[reading.index] : state.ChannelValue[reading.index];
                break;
        }
        MqttMessage& message = m_messages.emplace_back();
        if (FormatValue(value, InfoOf(reading.quantity).decimals, message.payload)) {
            message.topic = reading.stateTopic;
        } else {
            m_messages.pop_back();
        }
    }
    MqttMessage& statusMessage = m_messages.emplace_back();
    statusMessage.topic = m_statusTopic;
    AppendUtf8(statusMessage.payload, status);
    return m_messages;
}

}  // namespace brizalog
