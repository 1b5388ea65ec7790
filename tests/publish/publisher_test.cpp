#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "acquisition/form_fixture.h"
#include "catalogue/text_rules.h"
#include "publish/form_publisher.h"

namespace brizalog::testing {
namespace {

struct RecordingLink : PublishLink {
    std::vector<PublishSettings> configured;
    std::vector<MqttMessage> sent;

    void Configure(const PublishSettings& settings) override { configured.push_back(settings); }
    void Send(MqttMessage message) override { sent.push_back(std::move(message)); }

    // The last message on `topic`, or null.
    const MqttMessage* Last(const std::string& topic) const {
        for (auto it = sent.rbegin(); it != sent.rend(); ++it) {
            if (it->topic == topic) {
                return &*it;
            }
        }
        return nullptr;
    }
    double Value(const std::string& topic) const {
        const MqttMessage* m = Last(topic);
        return m == nullptr ? std::nan("") : std::stod(m->payload);
    }
    int Count(std::string_view topicPart) const {
        int n = 0;
        for (const MqttMessage& m : sent) {
            n += m.topic.find(topicPart) != std::string::npos ? 1 : 0;
        }
        return n;
    }
};

constexpr const char* kShed = "brizalog/shed/";
constexpr const char* kNode = "homeassistant/sensor/brizalog_shed/";

std::string Config(const RecordingLink& link, const std::string& key) {
    const MqttMessage* m = link.Last(std::string(kNode) + key + "/config");
    return m == nullptr ? "<none>" : m->payload;
}

// A started main form of system `type` that logs every 10 s and publishes as site "shed".
struct PublishingForm : FormFixture {
    RecordingLink link;
    FormPublisher publisher{form, link};

    explicit PublishingForm(int type, const std::string& moreOptions = "",
                            LocalDateTime startAt = {2026, 3, 7, 14, 0, 0, 0})
        : FormFixture(type) {
        clock.Set(startAt);
        SetSetting("LogOn", "1");
        SetSetting("LogDelay", "10");
        SetSetting("PersonalString", "Hill \"Top\" \xE9tage");
        folder.Write("options.cfg",
                     "<MqttEnabled>1</MqttEnabled>\r\n<MqttSite>Shed</MqttSite>\r\n" + moreOptions);
        Start();
        publisher.Start();
    }
    // Three frames a second apart from 14:00:00.250, then the tick at 14:00:10.
    void ThreeFramesAndATick(const std::string& frame) {
        timers.Advance(250);
        for (int i = 0; i < 3; ++i) {
            Receive(frame);
            timers.Advance(1000);
        }
        timers.Advance(10000 - 3250);
    }
};

TEST(Slug, KeepsLettersAndDigitsAndJoinsTheRestWithOneUnderscore) {
    const std::pair<const char*, const char*> cases[] = {
        {"WINDMILL AMPS", "windmill_amps"},
        {"  My Mill #2 ", "my_mill_2"},
        {"\xC9tage-Nord", "tage_nord"},  // Latin-1 letters are not topic-safe
        {"a/b+c#d", "a_b_c_d"},
        {"+/#", ""},
        {"", ""},
    };
    for (const auto& [text, slug] : cases) {
        EXPECT_EQ(Slug(text), slug) << text;
    }
}

TEST(PublishSettings, FillInWhatTheOptionsLeaveOpen) {
    struct Case {
        std::string options;
        std::string personal;
        int port;
        std::string site;
        std::string prefix;
    };
    const Case cases[] = {
        {"", "Personal Program NAME", 1883, "personal_program_name", "brizalog"},
        {"<MqttTls>1</MqttTls>", "", 8883, "site", "brizalog"},
        {"<MqttTls>1</MqttTls>\r\n<MqttPort>9000</MqttPort>", "x", 9000, "x", "brizalog"},
        {"<MqttPort>99999</MqttPort>\r\n<MqttSite>Shed 2</MqttSite>", "x", 1883, "shed_2",
         "brizalog"},
        {"<MqttPrefix>/home/+/energy/#</MqttPrefix>", "x", 1883, "x", "home//energy"},
        {"<MqttPrefix>#/</MqttPrefix>", "x", 1883, "x", "brizalog"},
    };
    for (const Case& c : cases) {
        Settings settings;
        settings.PersonalString = c.personal;
        const PublishSettings s = PublishSettingsFrom(ParseOptions(c.options), settings);
        EXPECT_EQ(s.port, c.port) << c.options;
        EXPECT_EQ(s.site, c.site) << c.options;
        EXPECT_EQ(s.prefix, c.prefix) << c.options;
        EXPECT_FALSE(s.enabled);
        EXPECT_TRUE(s.discovery);
        EXPECT_FALSE(s.perFrame);
    }
}

TEST(Publishing, ATickPublishesTheLoggedAveragesWithDiscoveryForEveryShownReading) {
    PublishingForm f(1);
    ASSERT_EQ(f.link.configured.size(), 1u);
    EXPECT_TRUE(f.link.configured[0].enabled);
    EXPECT_EQ(f.link.configured[0].host, "localhost");
    EXPECT_EQ(f.link.configured[0].AvailabilityTopic(), "brizalog/shed/availability");

    f.ThreeFramesAndATick("[<V1>13.27</V1><A1>4.43</A1><R1>311</R1><WS>7.2</WS>]");
    const std::string log = f.folder.Read("logs/BZ_2026_03_07.txt");
    ASSERT_FALSE(log.empty());

    // The announcement comes first, then each reading's value.
    ASSERT_FALSE(f.link.sent.empty());
    EXPECT_EQ(f.link.sent[0],
              (MqttMessage{"brizalog/shed/availability", "online", MessageKind::Availability}));
    const std::pair<const char*, const char*> logged[] = {
        {"system_volts", "V1"}, {"windmill_amps", "A1"}, {"windmill_rpm", "R1"}};
    for (const auto& [slug, tag] : logged) {
        const double inLog = ParseNumber(
            ReadTagValue(log, std::string("<") + tag + ">", std::string("</") + tag + ">"));
        EXPECT_NEAR(f.link.Value(kShed + std::string(slug) + "/state"), inLog, 0.5) << slug;
    }
    EXPECT_NEAR(f.link.Value("brizalog/shed/system_volts/state"), f.state().AvgValue[9], 0.005);
    EXPECT_NEAR(f.link.Value("brizalog/shed/windspeed/state"), f.state().AvgValue[12], 0.05);
    EXPECT_NEAR(f.link.Value("brizalog/shed/windmill_power/state"), f.state().AvgWatts[1], 0.05);
    EXPECT_NEAR(f.link.Value("brizalog/shed/windmill_power_today/state"),
                f.state().AvgWatts[1] * 10 / 3600, 0.05);
    EXPECT_EQ(f.link.Last("brizalog/shed/status")->payload, f.model().caption);

    // Each shown reading has its configuration; those of other layouts are taken back.
    const std::string volts = Config(f.link, "v1");
    for (const char* field :
         {"\"name\":\"SYSTEM VOLTS\"", "\"unique_id\":\"brizalog_shed_v1\"",
          "\"state_topic\":\"brizalog/shed/system_volts/state\"",
          "\"availability_topic\":\"brizalog/shed/availability\"", "\"unit_of_measurement\":\"V\"",
          "\"device_class\":\"voltage\"", "\"state_class\":\"measurement\"",
          "\"identifiers\":[\"brizalog_shed\"]", "\"name\":\"Hill \\\"Top\\\" \xC3\xA9tage\"",
          "\"model\":\"2 Windmills\""}) {
        EXPECT_NE(volts.find(field), std::string::npos) << field << " in " << volts;
    }
    const std::string energy = Config(f.link, "wh1");
    EXPECT_NE(energy.find("\"name\":\"WINDMILL POWER today\""), std::string::npos);
    EXPECT_NE(energy.find("\"unit_of_measurement\":\"Wh\",\"device_class\":\"energy\","
                          "\"state_class\":\"total_increasing\""),
              std::string::npos);
    const std::string rpm = Config(f.link, "r1");
    EXPECT_NE(rpm.find("\"unit_of_measurement\":\"rpm\""), std::string::npos);
    EXPECT_EQ(rpm.find("device_class"), std::string::npos);
    EXPECT_NE(Config(f.link, "ws")
                  .find("\"unit_of_measurement\":\"m/s\",\"device_class\":"
                        "\"wind_speed\""),
              std::string::npos);
    EXPECT_NE(Config(f.link, "status").find("\"state_topic\":\"brizalog/shed/status\""),
              std::string::npos);
    for (const char* gone : {"a2", "r2", "w2", "wh2", "v3", "p1", "t1"}) {
        EXPECT_EQ(Config(f.link, gone), "") << gone;
    }

    // The next tick sends values only: the layout has not changed.
    f.link.sent.clear();
    f.ThreeFramesAndATick("[<V1>12.5</V1><A1>2</A1><R1>200</R1><WS>3</WS>]");
    EXPECT_EQ(f.link.Count("homeassistant/"), 0);
    EXPECT_EQ(f.link.Count("availability"), 0);
    EXPECT_EQ(f.link.sent.size(), 7u);  // five readings' values, the day's energy, the status
}

TEST(Publishing, ALayoutChangeTakesBackWhatIsNoLongerShownAndAnnouncesWhatIsNew) {
    PublishingForm f(1);
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    f.link.sent.clear();

    ChannelTable& t = f.state().channels;
    t.enableDISPLAY[1] = 0;        // the amps leave the panel
    t.ChannelName[9] = "BATTERY";  // the volts are renamed
    t.enableDISPLAY[18] = 1;       // power slot 2 comes in
    t.HARDWAREenabled[18] = 1;     // ... under the default "channel name"
    t.ChannelName[18] = t.ChannelName[2];
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");

    EXPECT_EQ(Config(f.link, "a1"), "");
    EXPECT_EQ(f.link.Last("brizalog/shed/windmill_amps/state")->payload, "");
    EXPECT_EQ(f.link.Last("brizalog/shed/system_volts/state")->payload, "");
    EXPECT_NE(Config(f.link, "v1")
                  .find("\"unique_id\":\"brizalog_shed_v1\",\"object_id\":"
                        "\"brizalog_shed_v1\",\"state_topic\":"
                        "\"brizalog/shed/battery/state\""),
              std::string::npos);
    EXPECT_NE(f.link.Last("brizalog/shed/battery/state"), nullptr);
    EXPECT_NE(Config(f.link, "w2").find("brizalog/shed/channel_name/state"), std::string::npos);
    EXPECT_NE(Config(f.link, "wh2").find("brizalog/shed/channel_name_today/state"),
              std::string::npos);
    // Unchanged readings are not announced again.
    EXPECT_EQ(f.link.Last(std::string(kNode) + "r1/config"), nullptr);

    // A second reading under the same name gets a topic of its own.
    t.enableDISPLAY[2] = 1;
    t.HARDWAREenabled[2] = 1;
    t.ChannelName[2] = "channel name";
    f.ThreeFramesAndATick("[<V1>13</V1><A2>4</A2>]");
    EXPECT_NE(Config(f.link, "a2").find("brizalog/shed/channel_name/state"), std::string::npos);
    EXPECT_NE(Config(f.link, "w2").find("brizalog/shed/channel_name_w2/state"), std::string::npos);
}

TEST(Publishing, ValuesThatAreNotFiniteAreLeftOut) {
    PublishingForm f(1);
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    f.state().AvgValue[9] = std::numeric_limits<double>::infinity();
    f.state().AvgValue[1] = std::nan("");
    f.state().AvgValue[13] = -0.0001;
    Publisher publisher(f.link);
    publisher.Configure(f.state());
    const std::vector<MqttMessage>& built =
        publisher.Build(f.state(), f.model().caption, ValuesOf::Tick);
    for (const MqttMessage& m : built) {
        EXPECT_NE(m.topic, "brizalog/shed/system_volts/state");
        EXPECT_NE(m.topic, "brizalog/shed/windmill_amps/state");
        if (m.topic == "brizalog/shed/windmill_rpm/state") {
            EXPECT_EQ(m.payload, "0");
        }
    }
}

TEST(Publishing, FramesArePublishedOnlyWhenAskedAndAtMostOnceASecond) {
    PublishingForm quiet(1);
    quiet.Receive("[<V1>13</V1><A1>4</A1>]");
    EXPECT_TRUE(quiet.link.sent.empty());

    PublishingForm f(1, "<MqttPerFrame>1</MqttPerFrame>");
    const auto framesAt = [&](int ms) {
        f.clock.Set({2026, 3, 7, 23, 59, 59, ms});
        f.Receive("[<V1>13.5</V1><A1>4</A1>]");
    };
    framesAt(0);
    EXPECT_NEAR(f.link.Value("brizalog/shed/system_volts/state"), f.state().ChannelValue[9], 0.005);
    const std::size_t first = f.link.sent.size();
    framesAt(400);
    framesAt(999);
    EXPECT_EQ(f.link.sent.size(), first);
    f.clock.Set({2026, 3, 8, 0, 0, 0, 0});  // a second later, across midnight
    f.Receive("[<V1>13.5</V1><A1>4</A1>]");
    EXPECT_GT(f.link.sent.size(), first);
}

TEST(Publishing, TheDaysEnergyStartsAgainFromZeroAfterMidnight) {
    PublishingForm f(1, "", {2026, 3, 7, 23, 59, 20, 0});
    std::vector<double> energy;
    f.timers.Advance(250);
    for (int second = 0; second < 60; ++second) {
        f.Receive("[<V1>1300</V1><A1>3000</A1>]");
        const std::size_t before = f.link.sent.size();
        f.timers.Advance(1000);
        for (std::size_t i = before; i < f.link.sent.size(); ++i) {
            if (f.link.sent[i].topic == "brizalog/shed/windmill_power_today/state") {
                energy.push_back(std::stod(f.link.sent[i].payload));
            }
        }
    }
    // Ticks at :30, :40, :50 and 00:00 add up; the rollover in the first seconds of the day
    // clears the total, so the tick at 00:00:10 holds that interval alone: Home Assistant takes
    // the drop as a new day of a total_increasing meter.
    ASSERT_EQ(energy.size(), 6u);
    ASSERT_GT(energy[0], 0);
    for (int i = 1; i < 4; ++i) {
        EXPECT_NEAR(energy[i], energy[0] * (i + 1), 0.02) << i;
    }
    EXPECT_NEAR(energy[4], energy[0], 0.02);
    EXPECT_NEAR(energy[5], energy[1], 0.02);
}

TEST(Publishing, MeterSystemsPublishTheirSlotsAndTemperatures) {
    PublishingForm f(4);
    ChannelTable& t = f.state().channels;
    for (int slot : {2, 3, 4, 6, 7, 8}) {
        t.enableDISPLAY[slot + 16] = 1;
        t.HARDWAREenabled[slot + 16] = 1;
        t.ChannelName[slot + 16] = "Meter " + std::to_string(slot);
    }
    f.ThreeFramesAndATick(
        "<msg><sensor>9</sensor><tmpr>21.5</tmpr><ch1><watts>00412</watts></ch1>"
        "<ch2><watts>00100</watts></ch2><ch3><watts>00007</watts></ch3></msg>");
    EXPECT_NE(Config(f.link, "t1")
                  .find("\"unit_of_measurement\":\"\xC2\xB0"
                        "C\",\"device_class\":\"temperature\""),
              std::string::npos);
    EXPECT_NE(Config(f.link, "t2"), "<none>");
    EXPECT_DOUBLE_EQ(f.link.Value("brizalog/shed/temperature/state"), 21.5);
    EXPECT_DOUBLE_EQ(f.link.Value("brizalog/shed/meter_2/state"), 412);
    EXPECT_DOUBLE_EQ(f.link.Value("brizalog/shed/meter_4/state"), 7);
    EXPECT_NE(Config(f.link, "wh8"), "<none>");
    for (const char* never : {"w1", "w5", "wh1", "wh5", "v1", "a1"}) {
        EXPECT_EQ(Config(f.link, never), "") << never;
    }
}

TEST(Publishing, SettingsDecideWhatIsSentAndAChangeOfSiteTakesTheOldEntitiesBack) {
    PublishingForm off(1, "<MqttDiscovery>0</MqttDiscovery>");
    off.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    EXPECT_EQ(off.link.Count("homeassistant/"), 0);
    EXPECT_GT(off.link.Count("brizalog/shed/"), 0);

    PublishingForm f(1);
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    f.link.sent.clear();
    f.folder.Write("options.cfg", "<MqttEnabled>1</MqttEnabled>\r\n<MqttSite>Barn</MqttSite>\r\n");
    f.form.stopMENU_Click();  // the Setup menu, and Options in it, wait while logging
    ASSERT_TRUE(f.form.Click("optionsMENU"));  // the Options window saved and closed
    ASSERT_EQ(f.link.configured.size(), 2u);
    f.form.startMENU_Click();
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    EXPECT_EQ(f.link.configured[1].site, "barn");
    EXPECT_EQ(Config(f.link, "v1"), "");  // sent before the link moved on
    EXPECT_NE(f.link.Last("homeassistant/sensor/brizalog_barn/v1/config"), nullptr);
    EXPECT_EQ(f.link.Last("brizalog/barn/availability")->payload, "online");

    f.link.sent.clear();
    f.state().options.SetFlag("MqttEnabled", false);
    f.ThreeFramesAndATick("[<V1>13</V1><A1>4</A1>]");
    EXPECT_FALSE(f.link.configured.back().enabled);
    EXPECT_EQ(f.link.Count("brizalog/barn/"), 0);
    EXPECT_EQ(f.link.Last("homeassistant/sensor/brizalog_barn/v1/config")->payload, "");
}

}  // namespace
}  // namespace brizalog::testing
