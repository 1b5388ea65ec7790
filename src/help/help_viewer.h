#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/control.h"
#include "catalogue/services.h"

namespace brizalog {

// One topic of the help viewer. A topic is shown only when its ".txt" file exists, but what is
// shown always comes from its ".cfg" file: provisioning makes only the ".cfg" files, so a topic
// stays silent until its author puts the ".txt" beside it.
struct HelpTopic {
    std::string_view trigger;  // the control that shows it; empty for the opening's topic
    std::string_view caption;
    std::string_view heading;  // of the list's second column
    std::string_view tested;
    std::string_view read;
    std::string_view missing;  // the message when the tested file is not there
};

// The general topic first: the opening shows it.
extern const std::array<HelpTopic, 5> kHelpTopics;

struct HelpViewerModel {
    HelpViewerModel() = default;
    HelpViewerModel(const HelpViewerModel&) = delete;
    HelpViewerModel& operator=(const HelpViewerModel&) = delete;

    std::string caption = "Help File";
    Control hardware;
    Control graphing;
    Control credits;
    Control myinfo;
    Control codeMaker;  // "Make help & credit files"
    // ListView1 in report view: a first column without heading, and a second headed by the
    // topic, which holds the lines.
    std::string heading;
    std::vector<std::string> rows;
    ControlRegistry controls;
};

// The window `info`, "Help File": a read-only viewer for five topics, and the text maker of their
// authors.
class HelpViewer {
public:
    HelpViewer(std::filesystem::path folder, Dialogs& dialogs);
    HelpViewer(const HelpViewer&) = delete;
    HelpViewer& operator=(const HelpViewer&) = delete;

    static constexpr std::string_view kWindow = "info";
    // The list holds the lines of index 0 to this; a file with more fails at the copy.
    static constexpr std::size_t kHighestLine = 1000;

    // Shows the general topic.
    void Form_Load();
    // Clears the list and heads it with the topic; then, if its ".txt" exists, the lines of its
    // ".cfg" from the second to the last. The first line is the file's own heading. A ".cfg"
    // that cannot be read, or one with too many lines, leaves the list empty.
    void ShowTopic(const HelpTopic& topic);
    // The text maker: every line of "/codetext.txt" becomes a line of "/code.cfg" that appends
    // it to `temp`, quotes and all as they stand. Nothing happens without "/codetext.txt".
    void codeMaker_Click();
    // The viewer has no close control of its own: it closes by its title bar.
    void TitleBarClose() { m_closeRequested = true; }

    // A topic or the text maker by its control's name; false when there is no such control.
    bool Click(std::string_view name);

    bool CloseRequested() const { return m_closeRequested; }
    HelpViewerModel& model() { return m_model; }
    const HelpViewerModel& model() const { return m_model; }

private:
    std::filesystem::path m_folder;
    Dialogs& m_dialogs;
    HelpViewerModel m_model;
    bool m_closeRequested = false;
};

// The line of "/code.cfg" that the text maker makes of one line of text.
std::string CodeLine(std::string_view line);

}  // namespace brizalog
