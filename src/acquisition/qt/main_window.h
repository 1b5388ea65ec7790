#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "acquisition/status_line.h"
#include "catalogue/control.h"

class QAction;
class QCheckBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QVBoxLayout;

namespace brizalog {

class Brizalog;
class ClickableLabel;
class Lamp;

// The main window `Brizalog`: a view of the main form's model. The menu bar is built from the
// model's menu tree, the panel from its groups and cells; after every handler the window shows
// the model again (captions, check marks, enabled and visible states, colours, the title). Clicks
// on menu entries and cells go to the form by their names; the delay box and Check1 hand what
// the user types or ticks to the form. The window holds no rule of its own.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(Brizalog& form, QWidget* parent = nullptr);
    // The stale note goes with the window whose silence it told.
    ~MainWindow() override;

    // Shows the model as it stands now.
    void Render();

    // The serial event of the form, counting the frames it cuts for the status bar.
    void ReceiveSerial();
    // The device behind the port has gone, or is back.
    void DeviceLost();
    void DeviceBack();
    // The latest one-line notice of `source` (TellNotice); an empty text withdraws it.
    void ShowNotice(std::string_view source, const std::string& text);
    // Brings the status bar up to date; it also does so by itself once a second.
    void UpdateStatus();
    // The moment now, on the status bar's clocks.
    Moment Now() const;
    const StatusLine& status() const { return m_status; }
    // For tests: the seconds of the status bar's clock that only moves forward (by default the
    // machine's monotonic clock), from now on.
    void SetSecondsSource(std::function<double()> seconds);

    // For the tests: the menu action or the widget of a control by its own name.
    QAction* menuAction(const std::string& name) const;
    QWidget* controlWidget(const std::string& name) const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Cell {
        const Control* control;
        ClickableLabel* value;
        QLabel* caption;  // may be null
    };
    struct Group {
        const Control* control;
        QGroupBox* box;
        bool channel = false;  // a channel cell, captioned with the channel's name
        std::string shown;
    };

    void BuildMenus();
    void BuildPanel();
    QGroupBox* AddGroup(const std::string& name, const Control& control);
    void AddCell(QWidget* parent, QGridLayout* grid, int row, int column, const std::string& name,
                 const char* caption);
    void Forward(const std::string& name);
    void ArrangeGroups();
    void BuildStatusBar();

    Brizalog& m_form;
    std::map<std::string, QAction*> m_actions;
    // The menu entries in the menu tree's order, each with the caption it shows: a render
    // compares the model's caption with that copy instead of asking every entry for its text.
    struct MenuEntry {
        const Control* control;
        QAction* action;
        bool opensMenu;
        std::string shown;
    };
    std::vector<MenuEntry> m_menuEntries;
    std::map<std::string, QWidget*> m_widgets;
    std::vector<Cell> m_cells;
    std::vector<Group> m_groups;
    std::vector<std::pair<const Control*, QLabel*>> m_labels;

    QWidget* m_panel = nullptr;
    int m_channelTitleWidth = 0;  // pixels for a channel's name over its cell  // inside the scroll
                                  // area that is the central widget
    QVBoxLayout* m_groupStack = nullptr;
    Lamp* m_dataOK = nullptr;
    Lamp* m_logOK = nullptr;
    QLineEdit* m_delay = nullptr;
    QCheckBox* m_check1 = nullptr;
    // The status bar: its rules are the core's StatusLine; the labels show its texts.
    QElapsedTimer m_monotonic;
    std::function<double()> m_seconds;
    StatusLine m_status;
    QLabel* m_portText = nullptr;
    QLabel* m_loggingText = nullptr;
    QLabel* m_frameText = nullptr;
    QLabel* m_rateText = nullptr;
    QLabel* m_unpluggedText = nullptr;
    QLabel* m_noticeText = nullptr;
    int m_shownPort = -1;
    std::vector<int> m_arrangedTops;
    int m_arrangedHeight = -1;
};

}  // namespace brizalog
