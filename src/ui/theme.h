#pragma once

#include <QColor>
#include <QPalette>

class QApplication;

namespace brizalog {

// Colours of the desktop that no rule of the system fixes follow the palette, light or dark;
// colours the system fixes (channel colours, battery tiles, lamps) stay, and text on them takes
// whichever of black and white reads best.

// The contrast of two colours as a reader sees it, 1 to 21: the ratio of their relative
// luminances, each plus 0.05 (the measure of the Web Content Accessibility Guidelines).
double ContrastRatio(const QColor& a, const QColor& b);

// Black or white, whichever contrasts more with `ground`.
QColor TextOn(const QColor& ground);

// `text` moved towards black or white, as little as needed, until it reads on `ground` at
// `least` : 1 (a link colour of a dark palette, a muted caption).
QColor ReadableOn(const QColor& text, const QColor& ground, double least = 4.5);

// `a` mixed with `b`, `share` of b (0 to 1).
QColor Mix(const QColor& a, const QColor& b, double share);

// A dark palette for the Fusion style, every text role at 4.5 : 1 or better on its ground.
QPalette DarkPalette();

// The Fusion style with DarkPalette, for the whole application: `brizalog --dark`, or
// BRIZALOG_THEME=dark in the environment. Without either, the platform's own palette rules.
void ApplyDarkTheme(QApplication& app);
bool DarkThemeAsked(int argc, char* argv[]);

}  // namespace brizalog
