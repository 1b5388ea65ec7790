#include "ui/theme.h"

#include <QApplication>
#include <QStyleFactory>
#include <cmath>
#include <cstring>

namespace brizalog {

namespace {

double Channel(double value) {
    const double c = value / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    const QColor rgb = colour.toRgb();
    return 0.2126 * Channel(rgb.red()) + 0.7152 * Channel(rgb.green()) +
           0.0722 * Channel(rgb.blue());
}

}  // namespace

double ContrastRatio(const QColor& a, const QColor& b) {
    const double la = Luminance(a);
    const double lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor TextOn(const QColor& ground) {
    return ContrastRatio(Qt::black, ground) >= ContrastRatio(Qt::white, ground) ? QColor(Qt::black)
                                                                                : QColor(Qt::white);
}

QColor Mix(const QColor& a, const QColor& b, double share) {
    const QColor x = a.toRgb();
    const QColor y = b.toRgb();
    auto mix = [share](int p, int q) { return static_cast<int>(std::lround(p + (q - p) * share)); };
    return QColor(mix(x.red(), y.red()), mix(x.green(), y.green()), mix(x.blue(), y.blue()));
}

QColor ReadableOn(const QColor& text, const QColor& ground, double least) {
    const QColor towards = TextOn(ground);
    for (int step = 0; step <= 20; ++step) {
        const QColor tried = Mix(text, towards, step / 20.0);
        if (ContrastRatio(tried, ground) >= least) {
            return tried;
        }
    }
    return towards;
}

QPalette DarkPalette() {
    const QColor window(0x2b, 0x2d, 0x30);
    const QColor base(0x1e, 0x1f, 0x22);
    const QColor text(0xe6, 0xe6, 0xe6);
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    p.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3d, 0x41));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x3a, 0x3d, 0x41));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, QColor(0xff, 0x6b, 0x6b));
    p.setColor(QPalette::Light, QColor(0x4a, 0x4d, 0x52));
    p.setColor(QPalette::Midlight, QColor(0x40, 0x43, 0x47));
    p.setColor(QPalette::Mid, QColor(0x5a, 0x5e, 0x63));
    p.setColor(QPalette::Dark, QColor(0x18, 0x19, 0x1b));
    p.setColor(QPalette::Shadow, Qt::black);
    p.setColor(QPalette::Highlight, QColor(0x3d, 0x8e, 0xe0));
    p.setColor(QPalette::HighlightedText, Qt::black);
    p.setColor(QPalette::Link, QColor(0x7c, 0xb8, 0xff));
    p.setColor(QPalette::LinkVisited, QColor(0xc0, 0x9c, 0xff));
    const QColor disabled(0x8a, 0x8a, 0x8a);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Disabled, role, disabled);
    }
    return p;
}

void ApplyDarkTheme(QApplication& app) {
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(DarkPalette());
}

bool DarkThemeAsked(int argc, char* argv[]) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--dark") == 0) {
            return true;
        }
    }
    return qEnvironmentVariable("BRIZALOG_THEME") == QStringLiteral("dark");
}

}  // namespace brizalog
