#include "publish/qt/mqtt_link.h"

#include <mosquitto.h>

#include <QCoreApplication>
#include <algorithm>
#include <cerrno>
#include <system_error>

#include "catalogue/options.h"

namespace brizalog {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Messages handed to libmosquitto and not yet acknowledged; the rest wait in the link's own
// bounded queue, so a slow broker never makes libmosquitto's queue grow without end.
constexpr int kWindow = 100;
constexpr int kQos = 1;

bool SameConnection(const PublishSettings& a, const PublishSettings& b) {
    return a.enabled == b.enabled && a.host == b.host && a.port == b.port && a.tls == b.tls &&
           a.caFile == b.caFile && a.insecure == b.insecure && a.user == b.user &&
           a.password == b.password && a.site == b.site && a.prefix == b.prefix;
}

void InitialiseLibrary() {
    static std::once_flag once;
    std::call_once(once, [] { mosquitto_lib_init(); });
}

}  // namespace

MqttLink::MqttLink() : MqttLink(Tuning{}) {}

MqttLink::MqttLink(Tuning tuning) : m_tuning(tuning) {
    InitialiseLibrary();
    m_thread = std::thread([this] { Run(); });
}

MqttLink::~MqttLink() {
    Stop();
}

void MqttLink::Configure(const PublishSettings& settings) {
    {
        std::lock_guard lock(m_mutex);
        m_wanted = settings;
        m_settingsChanged = true;
    }
    m_wake.notify_one();
}

void MqttLink::Send(MqttMessage message) {
    {
        std::lock_guard lock(m_mutex);
        if (m_stopping) {
            return;
        }
        if (m_queue.size() >= m_tuning.queueLimit && !m_queue.empty()) {
            // A state message is superseded by the next one of its reading; configurations and
            // availability are what a dashboard cannot rebuild, so they stay while states remain.
            auto oldest = std::find_if(m_queue.begin(), m_queue.end(), [](const MqttMessage& m) {
                return m.kind == MessageKind::State;
            });
            m_queue.erase(oldest != m_queue.end() ? oldest : m_queue.begin());
            ++m_dropped;
        }
        m_queue.push_back(std::move(message));
    }
    m_wake.notify_one();
}

void MqttLink::Stop(milliseconds grace) {
    {
        std::lock_guard lock(m_mutex);
        if (!m_thread.joinable()) {
            return;
        }
        m_stopping = true;
        m_stopBy = Clock::now() + grace;
    }
    m_wake.notify_one();
    m_thread.join();
}

MqttLink::Counts MqttLink::counts() const {
    Counts c;
    c.delivered = m_delivered;
    c.dropped = m_dropped;
    c.connected = m_connected;
    std::lock_guard lock(m_mutex);
    c.waiting = m_queue.size();
    return c;
}

std::string MqttLink::Where() const {
    return "broker " + m_settings.host + ":" + std::to_string(m_settings.port);
}

void MqttLink::Tell(const std::string& text) {
    if (text == m_told) {
        return;
    }
    m_told = text;
    QMetaObject::invokeMethod(
        &m_context, [text] { TellNotice("mqtt", text); }, Qt::QueuedConnection);
}

// ---- The link's thread ------------------------------------------------------------------------

void MqttLink::Run() {
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (m_settingsChanged) {
            m_settingsChanged = false;
            const PublishSettings next = m_wanted;
            if (m_client != nullptr && SameConnection(next, m_settings)) {
                m_settings = next;  // discovery or per-frame: the publisher's business alone
                continue;
            }
            lock.unlock();
            // The old broker gets what was meant for it (the removal of a site's entities)
            // before the link moves on.
            Leave(Clock::now() + milliseconds(1000));
            m_settings = next;
            m_protocol = m_tuning.protocol;
            m_birth.clear();
            if (m_settings.enabled) {
                StartClient();
            } else {
                Tell("");
            }
            lock.lock();
            continue;
        }
        lock.unlock();
        if (m_client != nullptr) {
            const auto now = Clock::now();
            if (m_phase == Phase::Waiting && now >= m_nextAttempt) {
                Connect();
            }
            if (m_phase == Phase::Connecting && now - m_attemptStarted > m_tuning.answerTimeout) {
                const auto seconds =
                    std::chrono::duration_cast<std::chrono::seconds>(m_tuning.answerTimeout);
                Fail(Where() + " accepted the connection but did not answer within " +
                     std::to_string(seconds.count()) + " s (retrying)");
            }
            if (m_phase == Phase::Connected) {
                Deliver();
            }
            if (m_phase == Phase::Connecting || m_phase == Phase::Connected) {
                const int rc = mosquitto_loop(m_client, 50, 1);
                if (rc != MOSQ_ERR_SUCCESS && m_phase != Phase::Waiting) {
                    Lost(rc);
                }
            }
        }
        lock.lock();
        const auto pending = [this] { return m_stopping || m_settingsChanged; };
        if (m_client == nullptr) {
            // Publishing is off: nothing to do until the settings change.
            m_wake.wait(lock, pending);
        } else if (m_phase == Phase::Waiting) {
            m_wake.wait_for(lock, milliseconds(50), pending);
        }
    }
    lock.unlock();

    const auto stopBy = [this] {
        std::lock_guard guard(m_mutex);
        return m_stopBy;
    }();
    Leave(stopBy);
}

// What is queued goes while the broker takes it, then "offline", which the broker keeps instead
// of sending the will; all by `by` at the latest.
void MqttLink::Leave(Clock::time_point by) {
    if (m_client != nullptr && m_phase == Phase::Connected) {
        const auto drainBy = by - (by - Clock::now()) / 4;
        while (m_phase == Phase::Connected && Clock::now() < drainBy) {
            Deliver();
            const bool empty = [this] {
                std::lock_guard guard(m_mutex);
                return m_queue.empty();
            }();
            if (empty && m_inFlight == 0) {
                break;
            }
            if (mosquitto_loop(m_client, 20, 1) != MOSQ_ERR_SUCCESS) {
                break;
            }
        }
        if (m_phase == Phase::Connected) {
            const std::string topic = m_settings.AvailabilityTopic();
            int mid = 0;
            const int before = m_inFlight;
            if (mosquitto_publish(m_client, &mid, topic.c_str(), 7, kOffline, kQos, true) ==
                MOSQ_ERR_SUCCESS) {
                ++m_inFlight;
                while (m_inFlight > before && Clock::now() < by &&
                       mosquitto_loop(m_client, 20, 1) == MOSQ_ERR_SUCCESS) {
                }
            }
            mosquitto_disconnect(m_client);
            mosquitto_loop(m_client, 20, 1);
        }
    }
    EndClient();
}

void MqttLink::StartClient() {
    const std::string id =
        "brizalog-" + m_settings.site + "-" + std::to_string(QCoreApplication::applicationPid());
    m_client = mosquitto_new(id.c_str(), true, this);
    if (m_client == nullptr) {
        Tell(Where() + ": out of memory for the client");
        return;
    }
    mosquitto_int_option(m_client, MOSQ_OPT_PROTOCOL_VERSION,
                         m_protocol == 5 ? MQTT_PROTOCOL_V5 : MQTT_PROTOCOL_V311);
    if (!m_settings.user.empty()) {
        mosquitto_username_pw_set(
            m_client, m_settings.user.c_str(),
            m_settings.password.empty() ? nullptr : m_settings.password.c_str());
    }
    const std::string will = m_settings.AvailabilityTopic();
    mosquitto_will_set(m_client, will.c_str(), 7, kOffline, kQos, true);
    if (m_settings.tls) {
        if (!m_settings.caFile.empty()) {
            if (mosquitto_tls_set(m_client, m_settings.caFile.c_str(), nullptr, nullptr, nullptr,
                                  nullptr) != MOSQ_ERR_SUCCESS) {
                Tell(Where() + ": the CA file " + m_settings.caFile +
                     " cannot be read (MqttCaFile); not connecting");
                mosquitto_destroy(m_client);
                m_client = nullptr;
                return;
            }
        } else {
            mosquitto_int_option(m_client, MOSQ_OPT_TLS_USE_OS_CERTS, 1);
        }
        if (m_settings.insecure) {
            mosquitto_tls_opts_set(m_client, 0, nullptr, nullptr);
            mosquitto_tls_insecure_set(m_client, true);
        }
    }
    mosquitto_connect_v5_callback_set(
        m_client, [](mosquitto*, void* self, int rc, int, const mosquitto_property*) {
            static_cast<MqttLink*>(self)->Connected(rc);
        });
    mosquitto_publish_callback_set(m_client, [](mosquitto*, void* self, int) {
        auto* link = static_cast<MqttLink*>(self);
        link->m_inFlight = std::max(0, link->m_inFlight - 1);
        ++link->m_delivered;
    });
    mosquitto_log_callback_set(m_client, [](mosquitto*, void* self, int level, const char* text) {
        // The only place libmosquitto names what went wrong inside TLS.
        if ((level & MOSQ_LOG_ERR) != 0 && text != nullptr) {
            static_cast<MqttLink*>(self)->m_lastError = text;
        }
    });
    m_phase = Phase::Waiting;
    m_nextAttempt = Clock::now();
    m_backoff = milliseconds(500);
}

void MqttLink::EndClient() {
    if (m_client != nullptr) {
        mosquitto_destroy(m_client);
        m_client = nullptr;
    }
    m_phase = Phase::Idle;
    m_connected = false;
    m_inFlight = 0;
}

void MqttLink::Connect() {
    m_attemptStarted = Clock::now();
    m_lastError.clear();
    errno = 0;
    const int rc = mosquitto_connect_async(m_client, m_settings.host.c_str(), m_settings.port,
                                           m_tuning.keepaliveSeconds);
    if (rc == MOSQ_ERR_SUCCESS) {
        m_phase = Phase::Connecting;
        return;
    }
    Fail(Where() + ": " + Reason(rc, errno) + " (retrying)");
}

std::string MqttLink::Reason(int rc, int error) const {
    switch (rc) {
        case MOSQ_ERR_ERRNO:
            return error != 0 ? std::system_category().message(error) : "connection failed";
        case MOSQ_ERR_EAI:
            return "unknown host";
        case MOSQ_ERR_TLS:
        case MOSQ_ERR_TLS_HANDSHAKE:
            return "TLS failed" + (m_lastError.empty() ? std::string() : ": " + m_lastError) +
                   "; check MqttCaFile, or MqttInsecure for a self-signed broker";
        case MOSQ_ERR_CONN_LOST:
            return "connection lost";
        default:
            return mosquitto_strerror(rc);
    }
}

void MqttLink::Fail(const std::string& reason, bool refused) {
    if (m_phase == Phase::Connected) {
        mosquitto_disconnect(m_client);
    }
    m_phase = Phase::Waiting;
    m_connected = false;
    if (refused) {
        m_nextAttempt = Clock::now() + m_tuning.refusedBackoff;
    } else {
        m_nextAttempt = Clock::now() + m_backoff;
        m_backoff = std::min(m_backoff * 2, m_tuning.longestBackoff);
    }
    Tell(reason);
}

void MqttLink::Lost(int rc) {
    const int error = errno;
    const bool wasConnected = m_phase == Phase::Connected;
    // A broker of MQTT 3.1 answers a CONNECT of version 5 in its own terms, which libmosquitto
    // cannot read; the next attempt speaks 3.1.1.
    if (!wasConnected && m_protocol == 5 && rc == MOSQ_ERR_PROTOCOL) {
        m_protocol = 4;
        mosquitto_int_option(m_client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V311);
    }
    Fail(Where() + ": " + (wasConnected ? std::string("connection lost") : Reason(rc, error)) +
         " (retrying)");
}

void MqttLink::Connected(int rc) {
    if (rc == 0) {
        m_phase = Phase::Connected;
        m_connected = true;
        m_backoff = milliseconds(500);
        // libmosquitto sends again what it held unacknowledged; the window starts afresh.
        m_inFlight = 0;
        for (const auto& [topic, message] : m_birth) {
            int mid = 0;
            if (mosquitto_publish(m_client, &mid, topic.c_str(),
                                  static_cast<int>(message.payload.size()), message.payload.data(),
                                  kQos, true) == MOSQ_ERR_SUCCESS) {
                ++m_inFlight;
            }
        }
        std::string text =
            "publishing to " + Where() + " as " + m_settings.prefix + "/" + m_settings.site;
        const std::uint64_t dropped = m_dropped;
        if (dropped > m_droppedTold) {
            text += "; " + std::to_string(dropped - m_droppedTold) +
                    " state messages were dropped from the full queue while it was away";
            m_droppedTold = dropped;
        }
        Tell(text);
        return;
    }
    // 1 in MQTT 3.1.1 and 132 in MQTT 5: the broker does not speak this version.
    if (m_protocol == 5 && (rc == 1 || rc == 132)) {
        m_protocol = 4;
        mosquitto_int_option(m_client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V311);
        m_phase = Phase::Waiting;
        m_nextAttempt = Clock::now();
        return;
    }
    const char* reason =
        m_protocol == 5 ? mosquitto_reason_string(rc) : mosquitto_connack_string(rc);
    Fail(
        Where() + " refused the login: " + (reason != nullptr ? reason : "refused") +
            " (MqttUser, MqttPassword; retrying every " +
            std::to_string(
                std::chrono::duration_cast<std::chrono::seconds>(m_tuning.refusedBackoff).count()) +
            " s)",
        true);
}

void MqttLink::Deliver() {
    while (m_inFlight < kWindow) {
        MqttMessage message;
        {
            std::lock_guard lock(m_mutex);
            if (m_queue.empty()) {
                return;
            }
            message = std::move(m_queue.front());
            m_queue.pop_front();
        }
        if (message.kind != MessageKind::State) {
            if (message.payload.empty()) {
                m_birth.erase(message.topic);
            } else {
                m_birth[message.topic] = message;
            }
        }
        int mid = 0;
        const int rc = mosquitto_publish(m_client, &mid, message.topic.c_str(),
                                         static_cast<int>(message.payload.size()),
                                         message.payload.data(), kQos, message.retained);
        if (rc == MOSQ_ERR_SUCCESS) {
            ++m_inFlight;
        } else if (rc == MOSQ_ERR_NO_CONN) {
            std::lock_guard lock(m_mutex);
            m_queue.push_front(std::move(message));
            return;
        }
        // Any other refusal (a topic the broker cannot take) drops that message alone.
    }
}

}  // namespace brizalog
