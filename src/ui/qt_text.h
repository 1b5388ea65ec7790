#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace brizalog {

// The system's texts are plain 8-bit characters, in files, frames and on screen alike.
inline QString ToQt(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// True when `shown` already holds `text`: a render asks this of every label many times a
// second, so it compares the characters as they stand, without making a QString of them.
inline bool ShowsText(const QString& shown, std::string_view text) {
    return shown == QLatin1StringView(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string FromQt(const QString& text) {
    return text.toLatin1().toStdString();
}

// A message's lines end in CR LF; a window shows them as line breaks.
inline QString MessageText(std::string_view text) {
    QString shown = ToQt(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return shown;
}

}  // namespace brizalog
