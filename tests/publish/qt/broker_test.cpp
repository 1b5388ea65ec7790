// Publishing against a real broker: Debian's mosquitto on 127.0.0.1 and a free port, with a
// configuration made for each test, and a libmosquitto subscriber reading what arrives.

#include <mosquitto.h>
#include <pwd.h>
#include <signal.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <map>
#include <mutex>

#include "catalogue/options.h"
#include "catalogue/text_rules.h"
#include "publish/qt/mqtt_link.h"
#include "support/board_simulator.h"
#include "support/live_desk.h"

using brizalog::testing::BoardSimulator;
using brizalog::testing::LogLines;

namespace brizalog {

namespace {

int FreePort() {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    return server.serverPort();
}

bool Run(const QString& program, const QStringList& args) {
    QProcess p;
    p.start(program, args);
    return p.waitForFinished(30000) && p.exitCode() == 0;
}

// mosquitto with `conf` (a listener line is added) in a folder of its own.
struct Broker {
    QTemporaryDir dir;
    QProcess process;
    int port = FreePort();
    QString conf;

    explicit Broker(const QString& extra = QString(), bool anonymous = true) {
        // Started by root, mosquitto would become the user "mosquitto", who cannot read the
        // test's own folder.
        const passwd* me = ::getpwuid(::geteuid());
        conf = QStringLiteral(
                   "listener %1 127.0.0.1\npersistence false\nallow_anonymous %2\n"
                   "user %3\n")
                   .arg(port)
                   .arg(anonymous ? "true" : "false")
                   .arg(me != nullptr ? me->pw_name : "mosquitto") +
               extra;
    }
    ~Broker() { Stop(); }
    QString Path(const QString& name) const { return dir.filePath(name); }
    bool Start() {
        QFile file(Path("mosquitto.conf"));
        if (!file.open(QIODevice::WriteOnly)) {
            return false;
        }
        file.write(conf.toUtf8());
        file.close();
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardOutputFile(Path("broker.log"), QIODevice::Append);
        process.start(QStringLiteral("/usr/sbin/mosquitto"), {"-c", Path("mosquitto.conf")});
        for (int i = 0; i < 100; ++i) {
            QTcpSocket probe;
            probe.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
            if (probe.waitForConnected(100)) {
                return true;
            }
            QTest::qWait(50);
        }
        return false;
    }
    void Stop() {
        if (process.state() != QProcess::NotRunning) {
            process.terminate();
            process.waitForFinished(5000);
        }
    }
};

// A subscriber to everything, keeping each message and the last payload of each topic.
struct Subscriber {
    mosquitto* client = nullptr;
    mutable std::mutex mutex;
    std::map<std::string, std::string> last;
    std::vector<std::pair<std::string, std::string>> all;

    explicit Subscriber(int port) {
        mosquitto_lib_init();
        client = mosquitto_new(nullptr, true, this);
        mosquitto_connect_callback_set(client, [](mosquitto* c, void*, int rc) {
            if (rc == 0) {
                mosquitto_subscribe(c, nullptr, "#", 1);
            }
        });
        mosquitto_message_callback_set(
            client, [](mosquitto*, void* self, const mosquitto_message* m) {
                auto* s = static_cast<Subscriber*>(self);
                std::lock_guard lock(s->mutex);
                std::string payload(static_cast<const char*>(m->payload),
                                    static_cast<std::size_t>(m->payloadlen));
                s->last[m->topic] = payload;
                s->all.emplace_back(m->topic, payload);
            });
        mosquitto_connect(client, "127.0.0.1", port, 30);
        mosquitto_loop_start(client);
    }
    ~Subscriber() {
        mosquitto_disconnect(client);
        mosquitto_loop_stop(client, true);
        mosquitto_destroy(client);
    }
    std::string Last(const std::string& topic) const {
        std::lock_guard lock(mutex);
        const auto it = last.find(topic);
        return it == last.end() ? std::string("<none>") : it->second;
    }
    int Count(const std::string& topic) const {
        std::lock_guard lock(mutex);
        return static_cast<int>(
            std::count_if(all.begin(), all.end(), [&](const auto& m) { return m.first == topic; }));
    }
    std::map<std::string, std::string> Snapshot() const {
        std::lock_guard lock(mutex);
        return last;
    }
};

// Every notice told, in order.
struct Notices {
    QStringList told;
    Notices() {
        SetNoticeTeller([this](std::string_view source, const std::string& text) {
            if (source == "mqtt" && !text.empty()) {
                told << QString::fromStdString(text);
            }
        });
    }
    ~Notices() { SetNoticeTeller(nullptr); }
    bool Any(const QString& part) const {
        return std::any_of(told.begin(), told.end(),
                           [&](const QString& t) { return t.contains(part); });
    }
};

PublishSettings LinkSettings(int port) {
    PublishSettings s;
    s.enabled = true;
    s.host = "127.0.0.1";
    s.port = port;
    s.site = "test";
    s.prefix = "brizalog";
    return s;
}

MqttMessage State(const std::string& topic, int value) {
    return {topic, std::to_string(value), MessageKind::State};
}

struct Logger {
    QProcess process;
    explicit Logger(const QString& folder) {
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(BRIZALOG_BINARY_DIR "/brizalog-logger"), {folder});
    }
    ~Logger() {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(5000);
        }
    }
};

double Tagged(const QString& line, const QString& tag) {
    return ParseNumber(ReadTagValue(line.toStdString(), "<" + tag.toStdString() + ">",
                                    "</" + tag.toStdString() + ">"));
}

}  // namespace

class BrokerTest : public QObject {
    Q_OBJECT

private slots:
    // The logger with the simulator: discovery, the log's averages, an outage of the broker
    // that costs no record, the last will on SIGKILL and "offline" on a clean exit.
    void theLoggerPublishesItsLogThroughOutagesAndSaysWhenItIsGone() {
        Broker broker;
        QVERIFY(broker.Start());
        QTemporaryDir dir;
        const QString path = dir.path();
        testing::ProvisionLoggingFolder(path.toStdString(), 3, "Hill Shed");
        QFile options(path + "/options.cfg");
        QVERIFY(options.open(QIODevice::WriteOnly));
        options.write(QStringLiteral("<MqttEnabled>1</MqttEnabled>\r\n<MqttHost>127.0.0.1</"
                                     "MqttHost>\r\n<MqttPort>%1</MqttPort>\r\n")
                          .arg(broker.port)
                          .toUtf8());
        options.close();
        BoardSimulator board(path.toStdString(), 3, 1, 5);
        QVERIFY(board.Start());
        auto subscriber = std::make_unique<Subscriber>(broker.port);

        auto logger = std::make_unique<Logger>(path);
        const std::string base = "brizalog/hill_shed/";
        QTRY_COMPARE_WITH_TIMEOUT(subscriber->Last(base + "availability"), std::string("online"),
                                  10000);
        QTRY_VERIFY_WITH_TIMEOUT(LogLines(path).size() >= 3, 10000);

        // Every configuration is a JSON object with what Home Assistant needs.
        int configs = 0;
        for (const auto& [topic, payload] : subscriber->Snapshot()) {
            if (topic.rfind("homeassistant/sensor/brizalog_hill_shed/", 0) != 0 ||
                payload.empty()) {
                continue;
            }
            ++configs;
            QJsonParseError error{};
            const QJsonObject o =
                QJsonDocument::fromJson(QByteArray::fromStdString(payload), &error).object();
            QVERIFY2(error.error == QJsonParseError::NoError, payload.c_str());
            for (const char* field : {"name", "unique_id", "state_topic", "availability_topic"}) {
                QVERIFY2(!o.value(field).toString().isEmpty(), payload.c_str());
            }
            QCOMPARE(o.value("device").toObject().value("name").toString(), "Hill Shed");
            QVERIFY(subscriber->Last(o.value("state_topic").toString().toStdString()) != "<none>");
        }
        QCOMPARE(configs, 7);  // V1, A1, R1, WS, W1, its day's energy, the status

        // Ten seconds without the broker: a record every second all the same, and publishing
        // back within five seconds of its return, configurations included.
        subscriber.reset();
        broker.Stop();
        const qsizetype before = LogLines(path).size();
        QTest::qWait(10000);
        QVERIFY2(LogLines(path).size() >= before + 9, qPrintable(LogLines(path).join('\n')));
        QVERIFY(broker.Start());
        QElapsedTimer back;
        back.start();
        subscriber = std::make_unique<Subscriber>(broker.port);
        QTRY_VERIFY_WITH_TIMEOUT(subscriber->Count(base + "system_volts/state") > 0, 5000);
        QVERIFY(back.elapsed() < 5000);
        QTRY_VERIFY_WITH_TIMEOUT(
            subscriber->Last("homeassistant/sensor/brizalog_hill_shed/v1/config") != "<none>",
            5000);

        // The published averages are the log's.
        logger->process.terminate();
        QVERIFY(logger->process.waitForFinished(5000));
        QCOMPARE(logger->process.exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(subscriber->Last(base + "availability"), std::string("offline"),
                                  3000);
        const QString record = LogLines(path).last();
        QVERIFY(std::abs(std::stod(subscriber->Last(base + "system_volts/state")) -
                         Tagged(record, "V1")) < 0.0051);
        QVERIFY(std::abs(std::stod(subscriber->Last(base + "windmill_amps/state")) -
                         Tagged(record, "A1")) < 0.051);
        QVERIFY(std::abs(std::stod(subscriber->Last(base + "windmill_rpm/state")) -
                         Tagged(record, "R1")) < 0.51);

        // Killed, it cannot say so; the broker does, by the last will.
        logger = std::make_unique<Logger>(path);
        QTRY_COMPARE_WITH_TIMEOUT(subscriber->Last(base + "availability"), std::string("online"),
                                  10000);
        ::kill(static_cast<pid_t>(logger->process.processId()), SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(subscriber->Last(base + "availability"), std::string("offline"),
                                  5000);
    }

    void aWrongPasswordIsToldAndTheRightOneConnects() {
        Broker broker(QStringLiteral("password_file %1\n"), false);
        const QString passwords = broker.Path("passwords");
        broker.conf = broker.conf.arg(passwords);
        QVERIFY(Run("mosquitto_passwd", {"-b", "-c", passwords, "owner", "s3cret"}));
        QVERIFY(broker.Start());
        Notices notices;

        MqttLink::Tuning quick;
        quick.refusedBackoff = std::chrono::milliseconds(500);
        MqttLink link(quick);
        PublishSettings s = LinkSettings(broker.port);
        s.user = "owner";
        s.password = "wrong";
        link.Configure(s);
        QTRY_VERIFY_WITH_TIMEOUT(notices.Any("refused the login"), 5000);
        QVERIFY(!link.counts().connected);

        s.password = "s3cret";
        link.Configure(s);
        link.Send(State("brizalog/test/x/state", 1));
        QTRY_VERIFY_WITH_TIMEOUT(link.counts().delivered == 1, 5000);
        QVERIFY(notices.told.last().startsWith("publishing to broker 127.0.0.1:"));

        // The same in MQTT 3.1.1, whose refusals have codes of their own.
        notices.told.clear();
        quick.protocol = 4;
        MqttLink older(quick);
        s.password = "wrong";
        older.Configure(s);
        QTRY_VERIFY_WITH_TIMEOUT(notices.Any("refused the login: Connection Refused"), 5000);
        s.password = "s3cret";
        older.Configure(s);
        older.Send(State("brizalog/test/x/state", 2));
        QTRY_VERIFY_WITH_TIMEOUT(older.counts().delivered == 1, 5000);
    }

    void tlsWithASelfSignedAuthority() {
        Broker broker(
            QStringLiteral("cafile %1/ca.crt\ncertfile %1/server.crt\n"
                           "keyfile %1/server.key\n"));
        const QString d = broker.dir.path();
        broker.conf = broker.conf.arg(d);
        const auto ssl = [&](const QString& args) {
            return Run("openssl", args.arg(d).split(' '));
        };
        QVERIFY(
            ssl("req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=TestCA "
                "-keyout %1/ca.key -out %1/ca.crt"));
        QVERIFY(
            ssl("req -newkey rsa:2048 -nodes -subj /CN=127.0.0.1 -keyout %1/server.key "
                "-out %1/server.csr"));
        QFile ext(d + "/ext.cnf");
        QVERIFY(ext.open(QIODevice::WriteOnly));
        ext.write("subjectAltName=IP:127.0.0.1\n");
        ext.close();
        QVERIFY(
            ssl("x509 -req -in %1/server.csr -CA %1/ca.crt -CAkey %1/ca.key "
                "-CAcreateserial -days 2 -extfile %1/ext.cnf -out %1/server.crt"));
        QVERIFY(broker.Start());
        Notices notices;

        PublishSettings s = LinkSettings(broker.port);
        s.tls = true;
        {
            // The machine's own authorities do not know this broker.
            MqttLink link;
            link.Configure(s);
            QTRY_VERIFY_WITH_TIMEOUT(notices.Any("TLS failed"), 5000);
        }
        const auto delivers = [&](const PublishSettings& settings) {
            MqttLink link;
            link.Configure(settings);
            link.Send(State("brizalog/test/x/state", 2));
            QTRY_VERIFY_WITH_TIMEOUT(link.counts().delivered == 1, 5000);
        };
        s.caFile = (d + "/ca.crt").toStdString();
        delivers(s);
        s.caFile.clear();
        s.insecure = true;
        delivers(s);
    }

    void aBrokerThatNeverAnswersOrAHostThatDoesNotExistIsTold() {
        QTcpServer silent;  // accepts, and never says a word
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        Notices notices;
        MqttLink::Tuning quick;
        quick.answerTimeout = std::chrono::milliseconds(2000);
        MqttLink link(quick);
        link.Configure(LinkSettings(silent.serverPort()));
        QElapsedTimer sending;
        sending.start();
        for (int i = 0; i < 20000; ++i) {
            link.Send(State("brizalog/test/x/state", i));
        }
        QVERIFY(sending.elapsed() < 1000);  // a full queue never waits
        QCOMPARE(link.counts().dropped, std::uint64_t{10000});
        QTRY_VERIFY_WITH_TIMEOUT(notices.Any("did not answer within 2 s"), 5000);

        PublishSettings nowhere = LinkSettings(1883);
        nowhere.host = "no-such-host.invalid";
        link.Configure(nowhere);
        QTRY_VERIFY_WITH_TIMEOUT(notices.Any("no-such-host.invalid:1883: unknown host"), 10000);
    }

    void aFullQueueDropsOldStatesKeepsConfigurationsAndTellsTheCountOnReturn() {
        Broker broker;
        QVERIFY(broker.Start());
        Notices notices;
        MqttLink::Tuning small;
        small.queueLimit = 20;
        MqttLink link(small);
        link.Configure(LinkSettings(broker.port));
        link.Send({"homeassistant/sensor/brizalog_test/a1/config", "{}", MessageKind::Config});
        QTRY_VERIFY_WITH_TIMEOUT(link.counts().delivered == 1, 5000);

        broker.Stop();
        QTRY_VERIFY_WITH_TIMEOUT(!link.counts().connected, 5000);
        link.Send({"homeassistant/sensor/brizalog_test/a2/config", "{}", MessageKind::Config});
        for (int i = 0; i < 30; ++i) {
            link.Send(State("brizalog/test/x/state", i));
        }
        QCOMPARE(link.counts().dropped, std::uint64_t{11});
        QVERIFY(broker.Start());
        Subscriber subscriber(broker.port);
        QTRY_VERIFY_WITH_TIMEOUT(notices.Any("11 state messages were dropped"), 5000);
        // The broker lost its retained messages; both configurations are there again.
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.Last("brizalog/test/x/state"), std::string("29"),
                                  5000);
        QCOMPARE(subscriber.Last("homeassistant/sensor/brizalog_test/a1/config"), "{}");
        QCOMPARE(subscriber.Last("homeassistant/sensor/brizalog_test/a2/config"), "{}");
    }
};

}  // namespace brizalog

QTEST_GUILESS_MAIN(brizalog::BrokerTest)
#include "broker_test.moc"
