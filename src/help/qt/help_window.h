#pragma once

#include <QDialog>
#include <filesystem>

#include "help/help_viewer.h"

class QPushButton;
class QTreeWidget;

namespace brizalog {

// The help viewer `info`: the topic's lines in a two-column list, and a button per topic and one
// for the text maker of the topics' authors. Escape closes it.
class HelpWindow : public QDialog {
    Q_OBJECT

public:
    HelpWindow(std::filesystem::path folder, Dialogs& dialogs, QWidget* parent = nullptr);

    HelpViewer& viewer() { return m_viewer; }
    void Load();
    void Render();

public slots:
    void reject() override;

private:
    HelpViewer m_viewer;
    QTreeWidget* m_list;
    std::vector<std::pair<QPushButton*, const Control*>> m_buttons;
    std::vector<std::string> m_rowsShown;
};

}  // namespace brizalog
