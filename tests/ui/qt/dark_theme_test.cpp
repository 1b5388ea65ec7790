// Under a dark palette every text of the main window, a channel form and the monitors reads on
// its ground at 4.5 : 1 or better, measured on the pixels the windows paint.

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QStyleOptionGroupBox>
#include <QTest>

#include "support/window_desk.h"
#include "ui/theme.h"

namespace brizalog {

using testing::WindowDesk;

namespace {

// The contrast of the text in `area` of `picture`: its ground is the commonest colour there,
// its text the pixel that stands out most from that ground.
double TextContrast(const QImage& picture, const QRect& area) {
    QHash<QRgb, int> counts;
    const QRect inside = area.intersected(picture.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    QRgb ground = 0;
    int most = -1;
    for (auto it = counts.begin(); it != counts.end(); ++it) {
        if (it.value() > most) {
            most = it.value();
            ground = it.key();
        }
    }
    double best = 1;
    for (auto it = counts.begin(); it != counts.end(); ++it) {
        best = std::max(best, ContrastRatio(QColor(ground), QColor(it.key())));
    }
    return best;
}

// Every text of `window` that reads worse than 4.5 : 1, with its name and its contrast.
QStringList PoorTexts(QWidget* window) {
    QApplication::processEvents();
    const QImage picture = window->grab().toImage();
    const qreal scale = picture.devicePixelRatio();
    QStringList poor;
    auto check = [&](QWidget* widget, QRect rect, const QString& what) {
        // A text scrolled out of view is measured when it is scrolled in.
        if (!widget->isVisible() || !widget->isEnabled() || rect.isEmpty() ||
            !widget->visibleRegion().boundingRect().contains(rect)) {
            return;
        }
        const QRect onWindow(widget->mapTo(window, rect.topLeft()) * scale, rect.size() * scale);
        const double contrast = TextContrast(picture, onWindow);
        if (contrast < 4.5) {
            poor << QStringLiteral("%1 \"%2\" %3:1")
                        .arg(widget->objectName(), what)
                        .arg(contrast, 0, 'f', 2);
        }
    };
    for (QLabel* label : window->findChildren<QLabel*>()) {
        if (!label->text().isEmpty()) {
            check(label, label->contentsRect(), label->text());
        }
    }
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        if (!button->text().isEmpty() && qobject_cast<QCheckBox*>(button) == nullptr) {
            check(button, button->rect().adjusted(4, 4, -4, -4), button->text());
        }
    }
    for (QGroupBox* group : window->findChildren<QGroupBox*>()) {
        if (group->title().isEmpty()) {
            continue;
        }
        QStyleOptionGroupBox option;
        option.initFrom(group);
        option.text = group->title();
        option.subControls = QStyle::SC_GroupBoxLabel;
        option.lineWidth = 1;
        option.textAlignment = group->alignment();
        const QRect title = group->style()->subControlRect(QStyle::CC_GroupBox, &option,
                                                           QStyle::SC_GroupBoxLabel, group);
        check(group, title, group->title());
    }
    return poor;
}

}  // namespace

class DarkThemeTest : public QObject {
    Q_OBJECT

private slots:
    void everyTextReadsOnItsGround() {
        for (int system : {3, 8}) {
            WindowDesk desk;
            desk.AllChannelsOn();
            desk.StartOnDesktop();
            desk.Click("setsystem(" + std::to_string(system) + ")");
            desk.Receive(testing::SampleFrame(system));
            desk.window->show();
            QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
            const QStringList panel = PoorTexts(desk.window.get());
            QVERIFY2(panel.isEmpty(), qPrintable(panel.join(QStringLiteral("; "))));
        }

        const struct {
            int system;
            const char* click;
        } openings[] = {{8, "logging(8)"}, {3, "logging(3)"}, {8, "batteryMonitor"},
                        {8, "maxMINS"},    {8, "VUmeters"},   {8, "SetupHardware"}};
        for (const auto& opening : openings) {
            WindowDesk desk;
            desk.AllChannelsOn();
            desk.StartOnDesktop();
            desk.Click("setsystem(" + std::to_string(opening.system) + ")");
            desk.Receive(testing::SampleFrame(opening.system));
            QStringList poor;
            int seen = 0;
            desk.OnEachWindow([&](QWidget* window) {
                ++seen;
                desk.timers.Advance(2000);
                poor << PoorTexts(window);
                window->close();
            });
            desk.Click(opening.click);
            QCoreApplication::processEvents();
            QVERIFY2(seen > 0, opening.click);
            QVERIFY2(poor.isEmpty(),
                     qPrintable(QString::fromLatin1(opening.click) + QStringLiteral(": ") +
                                poor.join(QStringLiteral("; "))));
        }
    }

    // The colour chart's colours are the channels' own; each caption is written to read on its
    // swatch (green, red and yellow among them).
    void theColourChartsCaptionsReadOnTheirSwatches() {
        WindowDesk desk;
        desk.StartOnDesktop();
        desk.Click("setsystem(8)");
        QStringList poor;
        bool chartSeen = false;
        desk.OnEachWindow([&](QWidget* window) {
            if (window->objectName() == QStringLiteral("ColourCHART")) {
                chartSeen = true;
                poor << PoorTexts(window);
                window->close();
                return;
            }
            testing::Child<QAbstractButton>(window, "ChannelColour(17)")->click();
            window->close();
        });
        desk.Click("logging(8)");
        QVERIFY(chartSeen);
        QVERIFY2(poor.isEmpty(), qPrintable(poor.join(QStringLiteral("; "))));
    }
};

}  // namespace brizalog

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    brizalog::ApplyDarkTheme(app);
    brizalog::DarkThemeTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "dark_theme_test.moc"
