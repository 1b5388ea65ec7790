#include "ui/event_gate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <vector>

#include "catalogue/failure.h"
#include "catalogue/files.h"

namespace brizalog {

namespace {

struct Renderer {
    QPointer<QObject> owner;
    std::function<void()> render;
};

std::vector<Renderer>& Renderers() {
    static std::vector<Renderer> renderers;
    return renderers;
}

bool g_ending = false;

void RenderAll();

void ShowFailureBox(const std::string& message) {
    QString text = QString::fromLatin1(message.data(), static_cast<qsizetype>(message.size()));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Brizalog"), text, QMessageBox::Ok);
    box.exec();
}

std::function<void(const std::string&)>& FailureTeller() {
    static std::function<void(const std::string&)> tell = ShowFailureBox;
    return tell;
}

void EndWithFailure(const std::string& message) {
    g_ending = true;
    FailureTeller()(message);
    QCoreApplication::exit(1);
}

// False when the handler's failure has ended the application.
bool RunTrapped(const std::function<void()>& handler) {
    if (g_ending) {
        return false;
    }
    try {
        handler();
    } catch (const FileFailure& failure) {
        // Which file, and why: a full disk at exit or at start is then plain to see.
        EndWithFailure(std::string(failure.what()) + "\r\n" + failure.path().string() + ": " +
                       failure.reason());
        return false;
    } catch (const Failure& failure) {
        EndWithFailure(failure.what());
        return false;
    } catch (const std::exception& failure) {
        EndWithFailure(failure.what());
        return false;
    }
    return true;
}

// The pace of renders after serial arrivals: the time of the last render, and the one-shot
// timer of a render put off.
struct Pace {
    QElapsedTimer sinceRender;
    QTimer later;
    Pace() {
        later.setSingleShot(true);
        later.setTimerType(Qt::PreciseTimer);
        QObject::connect(&later, &QTimer::timeout, [] { RenderAll(); });
    }
};

// Made at the first paced event, when the application exists, and kept to the end of the process.
Pace& ThePace() {
    static Pace* const pace = new Pace;
    return *pace;
}

void RenderAll() {
    Pace& pace = ThePace();
    pace.later.stop();
    pace.sinceRender.start();
    // A window may close, and so leave the list, while another renders.
    auto& renderers = Renderers();
    std::erase_if(renderers, [](const Renderer& r) { return r.owner.isNull(); });
    const std::vector<Renderer> current = renderers;
    for (const Renderer& renderer : current) {
        if (!renderer.owner.isNull()) {
            renderer.render();
        }
    }
}

}  // namespace

void RunHandler(const std::function<void()>& handler) {
    if (RunTrapped(handler)) {
        RenderAll();
    }
}

void RunHandlerAtScreenPace(const std::function<void()>& handler) {
    if (!RunTrapped(handler)) {
        return;
    }
    Pace& pace = ThePace();
    if (!pace.sinceRender.isValid() || pace.sinceRender.elapsed() >= kRenderSpacingMs) {
        RenderAll();
    } else if (!pace.later.isActive()) {
        pace.later.start(kRenderSpacingMs - static_cast<int>(pace.sinceRender.elapsed()));
    }
}

void FlushRenders() {
    if (ThePace().later.isActive()) {
        RenderAll();
    }
}

void AddRenderer(QObject* owner, std::function<void()> render) {
    Renderers().push_back({QPointer<QObject>(owner), std::move(render)});
}

bool ApplicationEnding() {
    return g_ending;
}

void SetFailureTeller(std::function<void(const std::string& message)> tell) {
    FailureTeller() = std::move(tell);
}

}  // namespace brizalog
