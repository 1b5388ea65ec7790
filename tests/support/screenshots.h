#pragma once

#include <QDir>
#include <QString>

namespace brizalog::testing {

// Where the picture `name` of a window goes: screenshots/ in the build folder, made when missing,
// as NAME.png, or NAME_200.png in a run with QT_SCALE_FACTOR=2 (the scale in per cent).
inline QString ScreenshotFile(const QString& name) {
    const QString folder = QStringLiteral(BRIZALOG_BINARY_DIR "/screenshots");
    QDir().mkpath(folder);
    const QString scale = qEnvironmentVariable("QT_SCALE_FACTOR");
    const QString suffix =
        scale.isEmpty() || scale == QStringLiteral("1")
            ? QString()
            : QStringLiteral("_") + QString::number(qRound(scale.toDouble() * 100));
    return folder + QLatin1Char('/') + name + suffix + QStringLiteral(".png");
}

}  // namespace brizalog::testing
