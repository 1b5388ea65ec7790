#include "acquisition/brizalog.h"

namespace brizalog {

// Still to come with the logging cycle: the tick, Start and Stop.
void Brizalog::Timer1_Timer() {}
void Brizalog::startMENU_Click() {
    StartLogging();
}
void Brizalog::stopMENU_Click() {
    StopLogging();
}
void Brizalog::StartLogging() {}
void Brizalog::StopLogging() {}

}  // namespace brizalog
