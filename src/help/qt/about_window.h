#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>

namespace brizalog {

// The About window `frmAbout`: the title and the version, and a "System Info" button that starts
// the desktop's own system-information tool when one is installed, and says so plainly when none
// is.
class AboutWindow : public QDialog {
    Q_OBJECT

public:
    explicit AboutWindow(QWidget* parent = nullptr);

    // The system-information tools looked for on PATH, in order of preference.
    static QStringList KnownTools();
    // The first of them that is installed; empty when none is.
    static QString InstalledTool();

private:
    void StartSystemInfo();
};

}  // namespace brizalog
