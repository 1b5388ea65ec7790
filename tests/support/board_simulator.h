#pragma once

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <filesystem>

namespace brizalog::testing {

// brizalog-boardsim of this build, started on a program folder for one test and stopped (by
// SIGTERM, as a user's Ctrl-C) when the test is done with it.
class BoardSimulator {
public:
    BoardSimulator(std::filesystem::path folder, int port, int systemType, double rate)
        : m_folder(std::move(folder)), m_port(port), m_system(systemType), m_rate(rate) {}
    ~BoardSimulator() { Stop(); }

    static QString Program() {
        return QStringLiteral(BRIZALOG_BINARY_DIR "/tools/brizalog-boardsim");
    }
    QString Link() const {
        return QDir(QString::fromStdString(m_folder.string()))
            .filePath(QStringLiteral("ports/COM%1").arg(m_port));
    }

    // Options beyond the port, type and rate, such as a meter's "--chunks 32-128".
    void AddArguments(const QStringList& arguments) { m_extra += arguments; }

    // Starts the simulator and waits until its link is there.
    bool Start() {
        m_process.setProgram(Program());
        m_process.setArguments(QStringList{QStringLiteral("--folder"),
                                           QString::fromStdString(m_folder),
                                           QStringLiteral("--port"), QString::number(m_port),
                                           QStringLiteral("--system"), QString::number(m_system),
                                           QStringLiteral("--rate"), QString::number(m_rate)} +
                               m_extra);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (!m_process.waitForStarted(5000)) {
            return false;
        }
        for (int i = 0; i < 100 && !QFileInfo::exists(Link()); ++i) {
            QTest::qWait(50);
        }
        return QFileInfo::exists(Link());
    }

    // Stops it as the user would, and waits until it has removed its link.
    void Stop() {
        if (m_process.state() == QProcess::NotRunning) {
            return;
        }
        m_process.terminate();
        m_process.waitForFinished(5000);
    }

private:
    std::filesystem::path m_folder;
    int m_port;
    int m_system;
    double m_rate;
    QStringList m_extra;
    QProcess m_process;
};

}  // namespace brizalog::testing
