// A reading in a holder: it follows its label's visibility, and only a text that no longer fits
// moves the rest of the window.

#include <QHBoxLayout>
#include <QTest>

#include "ui/control_view.h"

namespace brizalog {

class LabelHolderTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_window = std::make_unique<QWidget>();
        auto* row = new QHBoxLayout(m_window.get());
        m_reading = new QLabel(QStringLiteral("12 W"));
        m_holder = new LabelHolder(m_reading, m_window.get());
        m_neighbour = new QLabel(QStringLiteral("beside"), m_window.get());
        row->addWidget(m_holder);
        row->addWidget(m_neighbour);
        row->addStretch();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void aHiddenReadingTakesNoRoomAndComesBack() {
        const int besideAt = m_neighbour->x();
        m_reading->setVisible(false);
        QVERIFY(!m_holder->isVisible());
        QTRY_VERIFY(m_neighbour->x() < besideAt);
        m_reading->setVisible(true);
        QVERIFY(m_holder->isVisible());
        QTRY_COMPARE(m_neighbour->x(), besideAt);
    }

    void onlyATextThatNoLongerFitsMovesTheWindow() {
        const QRect place = m_holder->geometry();
        m_reading->setText(QStringLiteral("9 W"));
        QTest::qWait(20);
        QCOMPARE(m_holder->geometry(), place);
        QCOMPARE(m_reading->geometry(), QRect(QPoint(0, 0), place.size()));

        m_reading->setText(QStringLiteral("123456789 Wh today"));
        QTRY_VERIFY(m_holder->width() >= m_reading->sizeHint().width());
        QCOMPARE(m_reading->size(), m_holder->size());
        QVERIFY(m_neighbour->x() > place.right());
    }

private:
    std::unique_ptr<QWidget> m_window;
    QLabel* m_reading = nullptr;
    LabelHolder* m_holder = nullptr;
    QLabel* m_neighbour = nullptr;
};

}  // namespace brizalog

QTEST_MAIN(brizalog::LabelHolderTest)
#include "label_holder_test.moc"
