// What the graph windows cost on the desktop, on a logged BZ day of 9,999 records (as many as a
// view holds) with all twelve series shown and the scales on: a click on the day until the chart
// and its scales are painted, a mouse move over the chart with its readouts and crosshair
// painted, a wheel step that reads the log for the new range and paints it, and a repaint of the
// window. Offscreen.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QListWidget>
#include <QMouseEvent>
#include <QWheelEvent>

#include "history/qt/chart_frame.h"
#include "support/history_desk.h"
#include "ui/event_gate.h"

namespace {

constexpr int kRecords = 9999;

struct Desk : brizalog::testing::HistoryDesk {
    Desk() : HistoryDesk("GraphBZ", kRecords, 8) {
        Open();
        ClickDay();
        QApplication::processEvents();
    }
};

void BM_FileClickToPaintedChart(benchmark::State& state) {
    Desk desk;
    brizalog::PlotCanvas& plot = desk.view->canvas();
    for (auto _ : state) {
        brizalog::RunHandler([&] { desk.view->engine().Click("File1", desk.dayFile); });
        desk.view->chartFrame().repaint();
        plot.repaint();
    }
    state.counters["records"] = desk.view->engine().RecordCount;
    state.counters["lines"] = static_cast<double>(plot.keptLines());
}
BENCHMARK(BM_FileClickToPaintedChart)->Unit(benchmark::kMillisecond);

void BM_MouseMoveOverChart(benchmark::State& state) {
    Desk desk;
    brizalog::PlotCanvas& plot = desk.view->canvas();
    int x = 0;
    for (auto _ : state) {
        x = (x + 7) % plot.width();
        const QPointF at(x, plot.height() / 2.0);
        QMouseEvent move(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&plot, &move);
        // The strips of the old and new crosshair and its time label are painted.
        QApplication::processEvents();
    }
}
BENCHMARK(BM_MouseMoveOverChart)->Unit(benchmark::kMicrosecond);

void BM_WheelStepReadsAndPaints(benchmark::State& state) {
    Desk desk;
    brizalog::PlotCanvas& plot = desk.view->canvas();
    bool in = true;
    for (auto _ : state) {
        // In to half the day around noon, and out again to the whole day: a read each.
        const QPointF at(plot.width() / 2.0, plot.height() / 2.0);
        QWheelEvent wheel(at, plot.mapToGlobal(at), {}, QPoint(0, in ? 120 : -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&plot, &wheel);
        desk.view->chartFrame().repaint();
        plot.repaint();
        in = !in;
    }
    state.counters["records"] = desk.view->engine().RecordCount;
}
BENCHMARK(BM_WheelStepReadsAndPaints)->Unit(benchmark::kMillisecond);

void BM_RepaintWindowFromImage(benchmark::State& state) {
    Desk desk;
    for (auto _ : state) {
        desk.view->repaint();
    }
}
BENCHMARK(BM_RepaintWindowFromImage)->Unit(benchmark::kMillisecond);

void BM_ResizeDrawsKeptLinesAgain(benchmark::State& state) {
    Desk desk;
    bool wide = false;
    for (auto _ : state) {
        wide = !wide;
        desk.view->resize(wide ? 1400 : 1180, wide ? 800 : 660);
        QApplication::sendPostedEvents();
        desk.view->canvas().repaint();
    }
}
BENCHMARK(BM_ResizeDrawsKeptLinesAgain)->Unit(benchmark::kMillisecond);

}  // namespace
