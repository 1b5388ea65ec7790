#include "help/help_viewer.h"

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

const std::array<HelpTopic, 5> kHelpTopics{{
    {"", "", "general HELP", "/help.txt", "/help.cfg", "help file seems to be missing"},
    {"hardware", "Hardware SETUP", "hardware HELP", "/hardwarehelp.txt", "/hardwarehelp.cfg",
     "hardware setup help file seems to be missing"},
    {"graphing", "graphing SETUP", "graphing HELP", "/graphinghelp.txt", "/graphinghelp.cfg",
     "graphing setup help file seems to be missing"},
    {"credits", "Credits", "Credits", "/credits.txt", "/credits.cfg",
     "helper crediting file seems to be missing"},
    {"myinfo", "ABOUT", "my info", "/MyInfo.txt", "/MyInfo.cfg", "Myinfo file seems to be missing"},
}};

std::string CodeLine(std::string_view line) {
    std::string code = "temp = temp & \"";
    code.append(line).append("\" & vbCrLf");
    return code;
}

HelpViewer::HelpViewer(std::filesystem::path folder, Dialogs& dialogs)
    : m_folder(std::move(folder)), m_dialogs(dialogs) {
    m_model.codeMaker.text = "Make help & credit files";
    m_model.controls.Add("codeMaker", m_model.codeMaker);
    Control* triggers[] = {nullptr, &m_model.hardware, &m_model.graphing, &m_model.credits,
                           &m_model.myinfo};
    for (std::size_t t = 1; t < kHelpTopics.size(); ++t) {
        triggers[t]->text = std::string(kHelpTopics[t].caption);
        m_model.controls.Add(std::string(kHelpTopics[t].trigger), *triggers[t]);
    }
}

void HelpViewer::Form_Load() {
    ShowTopic(kHelpTopics[0]);
}

void HelpViewer::ShowTopic(const HelpTopic& topic) {
    m_model.rows.clear();
    m_model.heading = std::string(topic.heading);
    if (!FileExists(InFolder(m_folder, topic.tested))) {
        m_dialogs.ShowMessage(std::string(topic.missing));
        return;
    }
    std::vector<std::string> lines;
    try {
        lines = LinesOf(ReadWholeFile(InFolder(m_folder, topic.read)));
    } catch (const Failure&) {
        return;
    }
    if (lines.size() > kHighestLine + 1) {
        return;
    }
    m_model.rows.assign(lines.begin() + 1, lines.end());
}

void HelpViewer::codeMaker_Click() {
    const std::filesystem::path source = InFolder(m_folder, "/codetext.txt");
    if (!FileExists(source)) {
        return;
    }
    try {
        std::string code;
        for (const std::string& line : LinesOf(ReadWholeFile(source))) {
            code.append(CodeLine(line)).append(kCrLf);
        }
        WriteWholeFile(InFolder(m_folder, "/code.cfg"), code);
    } catch (const Failure&) {
        // An author's tool: a file that cannot be read or written leaves things as they were.
    }
}

bool HelpViewer::Click(std::string_view name) {
    if (name == "codeMaker") {
        codeMaker_Click();
        return true;
    }
    for (const HelpTopic& topic : kHelpTopics) {
        if (!topic.trigger.empty() && topic.trigger == name) {
            ShowTopic(topic);
            return true;
        }
    }
    return false;
}

}  // namespace brizalog
