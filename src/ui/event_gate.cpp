#include "ui/event_gate.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPointer>
#include <vector>

#include "catalogue/failure.h"

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

void ShowFailureBox(const std::string& message) {
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Brizalog"),
                    QString::fromLatin1(message.data(), static_cast<qsizetype>(message.size())),
                    QMessageBox::Ok);
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

}  // namespace

void RunHandler(const std::function<void()>& handler) {
    if (g_ending) {
        return;
    }
    try {
        handler();
    } catch (const Failure& failure) {
        EndWithFailure(failure.what());
        return;
    } catch (const std::exception& failure) {
        EndWithFailure(failure.what());
        return;
    }
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
