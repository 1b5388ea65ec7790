#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/local_time.h"
#include "catalogue/state.h"
#include "publish/publish_link.h"

namespace brizalog {

// Publishing to MQTT with Home Assistant discovery: the messages are built here from the shared
// state, on the user-interface thread, and handed to a PublishLink that sends them elsewhere.
//
// Topics, with <p> the prefix and <s> the site:
//   <p>/<s>/<reading>/state   one per reading the system type shows: the value as a plain number
//                             in its unit; <reading> is the slug of the channel's name, and
//                             "<power name>_today" for the day's energy of a power slot in Wh
//   <p>/<s>/status            the main window's title
//   <p>/<s>/availability      "online" / "offline"
//   homeassistant/sensor/brizalog_<s>/<key>/config   the discovery configuration of a reading,
//                             <key> the channel's catalogue tag in lower case ("a1", "v1", "w3",
//                             "wh3" for the day's energy of slot 3, "t1" and "t2" for the meter's
//                             temperatures), so that renaming a channel keeps its entity.

// "My Mill #2" -> "my_mill_2": lower-case ASCII letters and digits, every run of anything else one
// "_", none at either end. Empty when nothing is left.
std::string Slug(std::string_view text);

// The settings of the Mqtt* options, with what they leave open filled in: the port from TLS,
// the site from PersonalString ("site" when that leaves nothing), the prefix without slashes at
// its ends or MQTT wildcards.
PublishSettings PublishSettingsFrom(const Options& options, const Settings& settings);

// What a reading is, which gives its unit and its Home Assistant classes.
enum class Quantity { Current, Voltage, WindSpeed, Speed, Pulses, Power, Energy, Temperature };

// One reading that is published: where its value stands and how it is named.
struct PublishedReading {
    std::string key;  // "a1": catalogue tag, stable while the channel's name changes
    std::string name;
    std::string stateTopic;
    Quantity quantity = Quantity::Current;
    int index = 0;  // channel 1..16, power slot 1..8, or RawValue index of a temperature

    friend bool operator==(const PublishedReading&, const PublishedReading&) = default;
};

// The readings that system `systemType` shows with this channel table, in a fixed order: a
// channel when its display and hardware flags are both 1, the power and the day's energy of a
// slot when its power channel's are, the meter's temperatures always.
std::vector<PublishedReading> PublishedReadings(const SharedState& state,
                                                const PublishSettings& settings);

// Every key a layout can have, for the removal of configurations left by an earlier layout.
const std::vector<std::string>& AllReadingKeys();

// Which values a build takes: the interval's averages after a logging tick, the frame's own
// values after a frame.
enum class ValuesOf { Tick, Frame };

class Publisher {
public:
    explicit Publisher(PublishLink& link) : m_link(link) {}

    // Reads the Mqtt* options and PersonalString again (at start-up and after the Options or
    // setup windows), and hands the link its settings when they changed. The next build sends
    // the availability and every configuration again.
    void Configure(const SharedState& state);

    // After each logging tick: every reading's interval average, the day's energy and the status.
    void AfterTick(const SharedState& state, const std::string& status);
    // After each calculated frame: the frame's values, when per-frame publishing is on and the
    // last frame's were sent a second or more ago by `now`.
    void AfterFrame(const SharedState& state, const std::string& status, const LocalDateTime& now);

    const PublishSettings& settings() const { return m_settings; }

    // The messages of one build without sending them (what AfterTick and AfterFrame hand over):
    // the availability and the configurations first when the layout changed, then the values.
    // Values that are not finite are left out.
    const std::vector<MqttMessage>& Build(const SharedState& state, const std::string& status,
                                          ValuesOf values);

private:
    void Publish(const SharedState& state, const std::string& status, ValuesOf values);
    void BuildLayoutMessages(const SharedState& state);
    std::string ConfigPayload(const PublishedReading& reading, const SharedState& state) const;
    std::string ConfigTopic(std::string_view key) const;

    PublishLink& m_link;
    PublishSettings m_settings;
    bool m_configured = false;
    bool m_freshSession = true;  // the next build announces everything and clears stale keys
    std::vector<PublishedReading> m_layout;  // what the last build published
    std::string m_deviceName;                // PersonalString and system type of that build
    int m_deviceModel = -1;
    std::string m_windUnits;
    // What the layout was built from, to tell at each build whether it can have changed.
    bool SameLayoutInputs(const SharedState& state) const;
    void KeepLayoutInputs(const SharedState& state);
    std::array<std::uint8_t, 25> m_shownFlags{};
    std::array<std::string, 25> m_names;
    std::string m_statusTopic;
    std::vector<PublishedReading> m_scratch;
    std::vector<MqttMessage> m_messages;
    double m_lastFrameSecond = -1;
};

}  // namespace brizalog
