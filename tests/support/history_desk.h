#pragma once

#include <QApplication>
#include <QListWidget>
#include <QMessageBox>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "app/desktop_dialogs.h"
#include "catalogue/provisioning.h"
#include "catalogue/virtual_platform.h"
#include "history/qt/graph_window_view.h"
#include "support/logged_day.h"
#include "ui/plot_canvas.h"

namespace brizalog::testing {

// A graph window on a fresh program folder holding one logged day of its member, 21 November
// 2026, while the clock says 22 November: the window opens on an empty chart and the day waits
// in the list. Message boxes answer themselves into `dialogs.messages`.
struct HistoryDesk {
    explicit HistoryDesk(std::string_view member, int records = 1400, double logDelay = 60) {
        folder = dir.path().toStdString();
        ProvisionProgramFolder(folder);
        SetChannelsFor(member, state.channels);
        state.settings.SystemType = 1;
        state.settings.LogDelay = logDelay;
        state.settings.WSUnits = "m/s";
        state.settings.PersonalString = "Hilltop cottage";
        clock.Set({2026, 11, 22, 9, 30, 0, 0});
        const GraphMember& graph = *FindGraphMember(member);
        dayFile = WriteLoggedDay(folder, graph.prefix, records, state);
        view = std::make_unique<GraphWindowView>(graph, state, folder, clock, dialogs);
    }

    // Loads and shows the window, as its menu entry does, without a modal loop.
    void Open() {
        view->Load();
        view->show();
        view->Render();
    }

    // A click on the day in the file list.
    void ClickDay() {
        auto* files = view->findChild<QListWidget*>(QStringLiteral("File1"));
        const QList<QListWidgetItem*> found =
            files->findItems(QString::fromStdString(dayFile), Qt::MatchExactly);
        if (!found.isEmpty()) {
            files->setCurrentItem(found.first());
        }
    }

    std::string Text(std::string_view control) const { return view->engine().Find(control)->text; }

    QTemporaryDir dir;
    std::filesystem::path folder;
    SharedState state;
    VirtualClock clock;
    VirtualDialogs dialogs;
    std::string dayFile;
    std::unique_ptr<GraphWindowView> view;
};

// The mouse at `fraction` of the chart's width, half way down, as the window system delivers it.
inline void Mouse(PlotCanvas& plot, QEvent::Type type, double fraction,
                  Qt::MouseButton button = Qt::NoButton) {
    const QPointF at(plot.width() * fraction, plot.height() / 2.0);
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent event(type, at, plot.mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(&plot, &event);
}

// From now on each message box of `dialogs` is answered, its text kept in `messages`, and
// `act` runs on each graph window once its modal loop runs; `act` ends by closing the window.
inline void OnGraphWindow(DesktopDialogs& dialogs, QStringList& messages,
                          std::function<void(GraphWindowView&)> act) {
    dialogs.onWindowShown = [&messages, act = std::move(act)](QWidget* shown) {
        if (auto* box = qobject_cast<QMessageBox*>(shown)) {
            messages << box->text();
            QTimer::singleShot(0, box, &QMessageBox::accept);
        } else if (auto* view = qobject_cast<GraphWindowView*>(shown)) {
            QTimer::singleShot(0, view, [view, act] { act(*view); });
        }
    };
}

}  // namespace brizalog::testing
