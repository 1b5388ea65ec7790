#pragma once

#include <QDialog>
#include <filesystem>

#include "setup/calibration_form.h"

class QAction;
class QLabel;
class QMenuBar;
class QScrollArea;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace brizalog {

// The window CALIBRATION: a row per offered channel laid out as the sum it shows,
// RAW − ZERO × SET = DISPLAY, with the type options and Reset beside it, and the menu entries
// SAVE and EXIT. Its own one-second timer refreshes the readouts while frames go on arriving
// behind it. Escape and the title bar's close box are the EXIT.
class CalibrationWindow : public QDialog {
    Q_OBJECT

public:
    // `timers` runs the window's one-second timer for as long as the window lives.
    CalibrationWindow(SharedState& state, std::filesystem::path folder, Dialogs& dialogs,
                      TimerBackend& timers, QWidget* parent = nullptr);
    ~CalibrationWindow() override;

    CalibrationForm& form() { return m_form; }
    void Load();
    void Render();

public slots:
    void reject() override;

private:
    struct RowWidgets {
        QWidget* cells[12] = {};  // every widget of the row, shown and hidden together
        QLabel* channel = nullptr;
        QLabel* raw = nullptr;
        QPushButton* zero = nullptr;
        QLineEdit* factor = nullptr;
        QLabel* display = nullptr;
        QRadioButton* amps = nullptr;
        QRadioButton* volts = nullptr;
        QRadioButton* pulse = nullptr;
        QPushButton* reset = nullptr;
    };

    CalibrationForm m_form;
    TimerBackend& m_timers;
    RowWidgets m_rows[17];
    QWidget* m_table;
    QScrollArea* m_rowsArea;
    QMenuBar* m_menu;
    QAction* m_save;
    QAction* m_exit;
};

}  // namespace brizalog
