// Frames that come faster than a screen can show them: the model follows every one, the windows
// render at the screen's pace and never stay behind the last frame.

#include <QApplication>
#include <QTest>
#include <algorithm>

#include "ui/event_gate.h"

namespace brizalog {

class EventGateTest : public QObject {
    Q_OBJECT

private:
    QObject m_window;
    int m_model = 0;          // what the handlers have set
    std::vector<int> m_seen;  // what each render showed

private slots:
    void initTestCase() {
        AddRenderer(&m_window, [this] { m_seen.push_back(m_model); });
        QTest::qWait(2 * kRenderSpacingMs);
    }

    void aBurstOfFramesRendersOnceAtOnceAndOnceForTheLast() {
        m_seen.clear();
        for (int frame = 1; frame <= 200; ++frame) {
            RunHandlerAtScreenPace([this, frame] { m_model = frame; });
        }
        QCOMPARE(m_model, 200);
        QCOMPARE(m_seen, std::vector<int>{1});
        QTRY_COMPARE_WITH_TIMEOUT(m_seen.size(), std::size_t{2}, 1000);
        QCOMPARE(m_seen.back(), 200);
        QTest::qWait(3 * kRenderSpacingMs);
        QCOMPARE(m_seen.size(), std::size_t{2});  // nothing more when nothing came
    }

    void aClickRendersAtOnceAndTakesThePutOffRenderWithIt() {
        m_seen.clear();
        RunHandlerAtScreenPace([this] { m_model = 1; });
        RunHandlerAtScreenPace([this] { m_model = 2; });
        RunHandler([this] { m_model = 3; });
        QCOMPARE(m_seen.back(), 3);
        const std::size_t renders = m_seen.size();
        QTest::qWait(3 * kRenderSpacingMs);
        QCOMPARE(m_seen.size(), renders);
    }

    void aFlushShowsTheLastFrameAtOnce() {
        m_seen.clear();
        RunHandlerAtScreenPace([this] { m_model = 10; });
        RunHandlerAtScreenPace([this] { m_model = 11; });
        FlushRenders();
        QCOMPARE(m_seen.back(), 11);
        FlushRenders();  // nothing put off: no render
        QCOMPARE(m_seen.back(), 11);
        QCOMPARE(std::count(m_seen.begin(), m_seen.end(), 11), 1);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::EventGateTest)
#include "event_gate_test.moc"
