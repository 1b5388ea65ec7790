#include "acquisition/brizalog.h"

namespace brizalog {

// Still to come with the application core: layouts and panel refresh.
void Brizalog::setsystem(int) {}
void Brizalog::RefreshPanel() {}

}  // namespace brizalog
