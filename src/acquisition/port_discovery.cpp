#include "acquisition/port_discovery.h"

#include "catalogue/files.h"
#include "catalogue/text_rules.h"

namespace brizalog {

FindCommsModel::FindCommsModel() {
    FindPORTS.text = "find ports";
    ExitFindCOMM.text = "Exit";
    controls.Add("FindPORTS", FindPORTS);
    controls.Add("ExitFindCOMM", ExitFindCOMM);
    controls.Add("cbocomm", cbocomm);
    controls.Add("SelectedPort", SelectedPort);
    controls.Add("AvailablePORTS", AvailablePORTS);
}

FindComms::FindComms(Settings& settings, PortProbe& probe) : m_settings(settings), m_probe(probe) {}

void FindComms::FindPORTS_Click() {
    m_model.FindPORTS.enabled = false;
    m_model.ExitFindCOMM.text = "Please wait until ports are found";
    m_model.cbocommItems.clear();
    m_model.cbocomm.text.clear();
    m_model.AvailablePORTS.text.clear();
    for (int port = 1; port <= kHighestPort; ++port) {
        if (m_probe.commAvailable(port)) {
            m_model.cbocommItems.push_back(std::to_string(port));
            m_model.AvailablePORTS.text += std::string(kCrLf) + std::to_string(port);
        }
    }
    // With no port found there is no first entry to select: the scan ends here, the button
    // stays disabled and the exit button keeps its waiting caption. That is the only sign.
    if (m_model.cbocommItems.empty()) {
        return;
    }
    cbocomm_Click(0);
    m_model.FindPORTS.enabled = true;
    m_model.ExitFindCOMM.text = "Save";
}

void FindComms::cbocomm_Click(int index) {
    if (index < 0 || index >= static_cast<int>(m_model.cbocommItems.size())) {
        return;
    }
    m_model.cbocomm.text = m_model.cbocommItems[static_cast<std::size_t>(index)];
    m_model.SelectedPort.text = m_model.cbocomm.text;
    m_settings.PortNumber = ParseNumber(m_model.SelectedPort.text);
}

bool FindComms::Click(std::string_view name) {
    Control* button = nullptr;
    if (name == "FindPORTS") {
        button = &m_model.FindPORTS;
    } else if (name == "ExitFindCOMM") {
        button = &m_model.ExitFindCOMM;
    } else {
        return false;
    }
    if (button->enabled && button->visible) {
        button == &m_model.FindPORTS ? FindPORTS_Click() : ExitFindCOMM_Click();
    }
    return true;
}

}  // namespace brizalog
