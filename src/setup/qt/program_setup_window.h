#pragma once

#include <QDialog>
#include <filesystem>

#include "setup/program_setup.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace brizalog {

class ClickableLabel;

// The window of ProgramSetup: renders its model and forwards what the user types and clicks.
// Closing it by its title bar is the same as "ABORT  NO changes saved".
class ProgramSetupWindow : public QDialog {
    Q_OBJECT

public:
    ProgramSetupWindow(SharedState& state, std::filesystem::path folder, Dialogs& dialogs,
                       PortProbe& probe, QWidget* parent = nullptr);

    ProgramSetup& form() { return m_form; }
    // Runs the form's opening; the window is shown by exec() afterwards.
    void Load();
    void Render();

private:
    QComboBox* List(const char* name, Control& control);
    QLineEdit* Text(const char* name, Control& control);
    QCheckBox* Check(const char* name, Control& control);

    ProgramSetup m_form;
    QComboBox* m_port;
    QComboBox* m_baud;
    QComboBox* m_logDelay;
    QComboBox* m_cents[3];
    QLineEdit* m_wsUnits;
    QLineEdit* m_personal;
    QCheckBox* m_saveExcel;
    QCheckBox* m_logOn;
    QCheckBox* m_messages;
    QPushButton* m_save;
    QPushButton* m_abort;
    ClickableLabel* m_findPorts;
};

}  // namespace brizalog
