#include "acquisition/brizalog.h"

namespace brizalog {

Brizalog::Brizalog(std::filesystem::path programFolder, Services services)
    : m_folder(std::move(programFolder)), m_services(services) {
    m_timer1.SetHandler([this] { Timer1_Timer(); });
    m_timer2.SetHandler([this] { Timer2_Timer(); });
    m_timer3.SetHandler([this] { Timer3_Timer(); });
    m_timer1.Attach(&m_services.timers);
    m_timer2.Attach(&m_services.timers);
    m_timer3.Attach(&m_services.timers);
}

Brizalog::~Brizalog() {
    m_timer1.Detach();
    m_timer2.Detach();
    m_timer3.Detach();
}

// Still to come with the application core: start-up, commands, intake, decoders, calculation.
void Brizalog::Form_Load() {}
void Brizalog::exitMENU_Click() {
    m_exitRequested = true;
}
bool Brizalog::Click(std::string_view) {
    return false;
}
void Brizalog::OpenPort() {}
void Brizalog::MSComm1_OnComm() {}
void Brizalog::Timer2_Timer() {}
void Brizalog::ReportTrappedError(const std::string&) {}
void Brizalog::ReportPortProblem() {}
void Brizalog::LoadConfigFiles() {}
void Brizalog::CalculateChannels() {}
void Brizalog::DecodeLoggerFrame() {}
void Brizalog::DecodeMeterFrame() {}

}  // namespace brizalog
