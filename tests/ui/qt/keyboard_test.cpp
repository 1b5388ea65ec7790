// The keyboard: an Alt letter on every menu entry with its words unchanged, and the controls
// that only a mouse reached before (names, tags, Find ALL PORTS, colour swatches) taken with
// Tab, Space and Enter.

#include <QAbstractButton>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTest>

#include "support/window_desk.h"
#include "ui/control_view.h"
#include "ui/keyboard.h"

namespace brizalog {

using testing::Child;
using testing::WindowDesk;

namespace {

// Every entry of `menu` (or bar), at every depth, that has the same letter as a neighbour or
// whose words differ from `caption(action)`.
QStringList Clashes(QWidget* menu) {
    QStringList clashes;
    QStringList letters;
    for (QAction* action : menu->actions()) {
        const QString text = action->text();
        const qsizetype mark = text.indexOf(QRegularExpression(QStringLiteral("&[^&]")));
        if (mark >= 0) {
            const QString letter = text.mid(mark + 1, 1).toLower();
            if (letters.contains(letter)) {
                clashes << text;
            }
            letters << letter;
        }
        if (action->menu() != nullptr) {
            clashes << Clashes(action->menu());
        }
    }
    return clashes;
}

}  // namespace

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void lettersAreMarkedWithoutChangingAWord() {
        const struct {
            const char* caption;
            const char* marked;
        } cases[] = {
            {"Setup", "&Setup"},
            {"setup Hardware", "setup &Hardware"},  // "s" is taken: the next word's start
            {"Save Channel Settings", "Save &Channel Settings"},
            {"Power & costs", "&Power && costs"},  // the caption's own "&" stays a character
            {"sss", "sss"},                        // no free letter: no mark
            {"Options\u2026", "&Options\u2026"},
        };
        QStringList taken;  // neighbours' letters, in the order the entries stand
        for (const auto& c : cases) {
            const QString marked = WithMnemonic(QString::fromUtf8(c.caption), taken);
            QCOMPARE(marked, QString::fromUtf8(c.marked));
            QCOMPARE(ShownCaption(marked), QString::fromUtf8(c.caption));
        }
    }

    // The main form's menus in every layout, and an entry another module adds later.
    void everyMenuEntryHasALetterOfItsOwn() {
        WindowDesk desk;
        desk.StartOnDesktop();
        for (int type : {0, 3, 8}) {
            desk.Click("setsystem(" + std::to_string(type) + ")");
            QStringList clashes = Clashes(desk.window->menuBar());
            QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join(QStringLiteral(", "))));
        }
        auto* setup = desk.window->menuBar()->findChild<QMenu*>(QStringLiteral("setup"));
        QVERIFY(setup != nullptr);
        QAction* added = setup->addAction(QStringLiteral("Options\u2026"));
        emit setup->aboutToShow();
        QVERIFY(added->text().contains(QLatin1Char('&')));
        QCOMPARE(ShownCaption(added->text()), QStringLiteral("Options\u2026"));
        QVERIFY(Clashes(setup).isEmpty());
    }

    // In the hardware form: Tab reaches a channel's name, Enter opens its name box; its colour
    // button opens the chart, where Enter on a swatch chooses it.
    void aChannelFormIsWorkedWithTheKeyboard() {
        InstallKeyboardConventions();
        WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(8)");
        QStringList opened;
        bool chosenByEnter = false;
        bool tabReachedTheName = false;
        desk.OnEachWindow([&](QWidget* window) {
            opened << window->objectName();
            if (opened.size() == 1) {
                window->activateWindow();
                [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(window);
                auto* name = Child<ClickableLabel>(window, "dataCHANNEL(1)");
                auto* check = Child<QWidget>(window, "CheckEnable(1)");
                check->setFocus();
                QTest::keyClick(check, Qt::Key_Tab);
                tabReachedTheName = QApplication::focusWidget() == name;
                QTest::keyClick(name, Qt::Key_Return);  // the name's box, then back here
                auto* colour = Child<QAbstractButton>(window, "ChannelColour(1)");
                colour->setFocus();
                QTest::keyClick(colour, Qt::Key_Enter);  // the chart
                QTest::keyClick(window, Qt::Key_Escape);
            } else if (window->objectName() == QStringLiteral("ColourCHART")) {
                auto* swatch = Child<QAbstractButton>(window, "Label3");
                swatch->setFocus();
                QTest::keyClick(swatch, Qt::Key_Return);
                chosenByEnter = !window->isVisible();
            } else {
                window->close();
            }
        });
        desk.Click("logging(8)");
        QCOMPARE(opened.size(), 3);
        QCOMPARE(opened.last(), QStringLiteral("ColourCHART"));
        QVERIFY(tabReachedTheName);
        QVERIFY(chosenByEnter);
    }
};

}  // namespace brizalog

QTEST_MAIN(brizalog::KeyboardTest)
#include "keyboard_test.moc"
