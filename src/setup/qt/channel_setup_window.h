#pragma once

#include <QDialog>
#include <filesystem>
#include <vector>

#include "setup/channel_setup.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace brizalog {

class ClickableLabel;

// The window of the four channel forms: one row per channel that the system type offers, with the
// name in the channel's colour, the box of its flag, and, in the hardware form, the limit, the
// colour button and the frame tag. Withdrawn rows are not shown; inactive controls are greyed.
// Escape and the title bar's close box are the abort.
class ChannelSetupWindow : public QDialog {
    Q_OBJECT

public:
    ChannelSetupWindow(std::string_view window, SharedState& state, std::filesystem::path folder,
                       Dialogs& dialogs, QWidget* parent = nullptr);

    ChannelSetup& form() { return m_form; }
    void Load();
    void Render();

public slots:
    void reject() override;

private:
    struct RowWidgets {
        QLabel* number = nullptr;
        QCheckBox* check = nullptr;
        ClickableLabel* name = nullptr;
        QComboBox* limit = nullptr;
        QPushButton* colour = nullptr;
        ClickableLabel* tag = nullptr;
        std::string nameShown;
    };
    void AddRow(QGridLayout* grid, int i);

    ChannelSetup m_form;
    RowWidgets m_rows[25];
    QScrollArea* m_scroll;
    QPushButton* m_save;
    QPushButton* m_abort;
};

}  // namespace brizalog
