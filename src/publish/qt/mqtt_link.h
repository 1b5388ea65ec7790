#pragma once

#include <QObject>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "publish/publish_link.h"

struct mosquitto;

namespace brizalog {

// The publisher's link to an MQTT broker, on libmosquitto. Everything that touches the network
// (name look-up, connecting, TLS, sending, keepalive, reconnecting) runs on a thread of the link's
// own; Send and Configure only put things into a queue under a short lock, so a dead, slow or
// misconfigured broker never delays a frame, a tick or a window. What the link has to say about
// the broker reaches TellNotice("mqtt", ...) on the thread that made the link, one line each time
// it changes.
//
// MQTT 5 first, 3.1.1 when the broker does not speak 5; every message at QoS 1 and retained.
// "offline" on the availability topic is the last will, and is published on a clean stop.
class MqttLink : public PublishLink {
public:
    struct Tuning {
        std::size_t queueLimit = 10000;  // messages waiting; beyond, the oldest state goes
        std::chrono::milliseconds answerTimeout{10000};   // for the broker's CONNACK
        std::chrono::milliseconds longestBackoff{4000};   // between attempts after a failure
        std::chrono::milliseconds refusedBackoff{30000};  // after a refused login
        int keepaliveSeconds = 30;
        // MQTT 5 (5), which falls back to 3.1.1 for a broker that refuses it; 3.1.1 (4) from the
        // start.
        int protocol = 5;
    };

    MqttLink();
    explicit MqttLink(Tuning tuning);
    // Stops as Stop does.
    ~MqttLink() override;
    MqttLink(const MqttLink&) = delete;
    MqttLink& operator=(const MqttLink&) = delete;

    void Configure(const PublishSettings& settings) override;
    void Send(MqttMessage message) override;

    // Sends what is queued while the broker takes it, then "offline", and leaves the broker; waits
    // at most `grace` for all that. Nothing is sent afterwards.
    void Stop(std::chrono::milliseconds grace = std::chrono::milliseconds(2000));

    struct Counts {
        std::uint64_t delivered = 0;  // acknowledged by the broker
        std::uint64_t dropped = 0;    // state messages dropped from a full queue
        std::size_t waiting = 0;      // in the queue now
        bool connected = false;
    };
    Counts counts() const;

private:
    enum class Phase { Idle, Waiting, Connecting, Connected };

    void Run();
    void StartClient();
    void EndClient();
    void Leave(std::chrono::steady_clock::time_point by);
    void Connect();
    // Leaves the attempt or the session and tries again later: after the growing backoff, or
    // after refusedBackoff when the broker refused the login.
    void Fail(const std::string& reason, bool refused = false);
    void Deliver();
    void Tell(const std::string& text);
    std::string Reason(int rc, int error) const;
    std::string Where() const;

    void Connected(int rc);
    void Lost(int rc);

    Tuning m_tuning;
    QObject m_context;  // notices are delivered on its thread

    // Shared with the link's thread, under m_mutex.
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<MqttMessage> m_queue;
    PublishSettings m_wanted;
    bool m_settingsChanged = false;
    bool m_stopping = false;
    std::chrono::steady_clock::time_point m_stopBy;
    std::atomic<std::uint64_t> m_delivered{0};
    std::atomic<std::uint64_t> m_dropped{0};
    std::atomic<bool> m_connected{false};

    // The link's thread only.
    mosquitto* m_client = nullptr;
    PublishSettings m_settings;
    Phase m_phase = Phase::Idle;
    int m_protocol = 5;
    std::chrono::steady_clock::time_point m_nextAttempt;
    std::chrono::steady_clock::time_point m_attemptStarted;
    std::chrono::milliseconds m_backoff{500};
    int m_inFlight = 0;
    std::uint64_t m_droppedTold = 0;
    std::string m_told;
    std::string m_lastError;  // libmosquitto's last error line (TLS)
    // The last configuration or availability per topic, sent again on each new session so that
    // a broker that lost its retained messages in a restart has them back at once.
    std::map<std::string, MqttMessage> m_birth;

    std::thread m_thread;
};

}  // namespace brizalog
