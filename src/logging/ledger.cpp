#include "acquisition/brizalog.h"

namespace brizalog {

// Still to come with the watt-hour ledger: rollover and replay.
void Brizalog::Timer3_Timer() {}
void Brizalog::ReplayTodaysLog() {}

}  // namespace brizalog
