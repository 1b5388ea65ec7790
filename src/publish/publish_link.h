#pragma once

#include <string>

namespace brizalog {

// What a message is to the transport: when its queue is full, state messages go first, since a
// later state of the same reading supersedes them; configurations and availability are kept.
enum class MessageKind {
    State,         // a reading's value or the status text
    Config,        // a Home Assistant discovery configuration, or its removal (empty payload)
    Availability,  // "online" or "offline" of the whole installation
};

// One message for the broker. Every message Brizalog sends is retained, so that a dashboard
// that subscribes later sees the last value at once.
struct MqttMessage {
    std::string topic;
    std::string payload;
    MessageKind kind = MessageKind::State;
    bool retained = true;

    friend bool operator==(const MqttMessage&, const MqttMessage&) = default;
};

// Where the broker is and who the installation is on it: the Mqtt* choices of options.cfg,
// made ready for use (the port filled in, site and prefix safe for topics).
struct PublishSettings {
    bool enabled = false;
    std::string host;
    int port = 1883;
    bool tls = false;
    std::string caFile;
    bool insecure = false;  // TLS without checking the broker's certificate or name
    std::string user;
    std::string password;
    std::string site;    // the <site> of the topics: lower case, digits and "_"
    std::string prefix;  // the first level(s) of the topics, "brizalog" by default
    bool discovery = true;
    bool perFrame = false;

    // "brizalog/shed/availability": "online" while publishing, "offline" after a clean stop and,
    // as the last will, after the program vanished.
    std::string AvailabilityTopic() const { return prefix + "/" + site + "/availability"; }

    friend bool operator==(const PublishSettings&, const PublishSettings&) = default;
};

inline constexpr const char* kOnline = "online";
inline constexpr const char* kOffline = "offline";

// The transport to the broker, which the publisher calls as the main form calls its serial
// link. No call may wait for the network: every one returns at once, and connecting, sending and
// retrying happen elsewhere.
class PublishLink {
public:
    virtual ~PublishLink() = default;
    // Talks to the broker of `settings` from now on, with "offline" on the availability topic as
    // its last will; a link that was connected elsewhere leaves that broker first. Settings that
    // are not enabled end publishing.
    virtual void Configure(const PublishSettings& settings) = 0;
    // Hands one message over for sending, in order, as soon as the broker can take it.
    virtual void Send(MqttMessage message) = 0;
};

}  // namespace brizalog
