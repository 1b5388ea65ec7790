#pragma once

#include <QDialog>
#include <filesystem>
#include <map>
#include <string>

#include "setup/options_form.h"

class QAbstractButton;
class QLineEdit;

namespace brizalog {

// The Options window: one group box per group of rows, a check box for each on/off choice and a
// line box for each text (dots for a secret, a Browse... button beside a file). The rows scroll
// when they are more than the screen holds. Enter is OK, Escape is Cancel.
class OptionsWindow : public QDialog {
    Q_OBJECT

public:
    OptionsWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent = nullptr);

    OptionsForm& form() { return m_form; }
    void Load();
    void Render();

public slots:
    void reject() override;

private:
    void Browse(const std::string& tag);

    OptionsForm m_form;
    std::map<std::string, QAbstractButton*, std::less<>> m_checks;
    std::map<std::string, QLineEdit*, std::less<>> m_boxes;
};

}  // namespace brizalog
