#pragma once

#include <QDialog>
#include <filesystem>

#include "catalogue/services.h"

namespace brizalog {

// The start-up window `frmSplash`. Its opening makes whatever folder and file of the program
// folder is missing; then it waits. A click anywhere on it or any key lets the start go on;
// "Click to ABORT" first says that the files are made and how to stop, and then lets the start
// go on in the same way: the abort does not stop the program.
class SplashWindow : public QDialog {
    Q_OBJECT

public:
    SplashWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent = nullptr);

    // 1 once "Click to ABORT" was clicked: the abort flag of the settings. Nothing reads it.
    int AbortFlag() const { return m_abortFlag; }

protected:
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Abort();

    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    int m_abortFlag = 0;
};

}  // namespace brizalog
