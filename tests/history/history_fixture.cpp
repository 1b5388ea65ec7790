#include "history/history_fixture.h"

#include "catalogue/patterns.h"

namespace brizalog::testing {

std::string HistoryTest::BzRecord(const std::string& time, double volts, double amps1, double rpm,
                                  double wind, int interval, double amps2) {
    return "<T>" + time + "</T><L>" + std::to_string(interval) + "</L><V1>" +
           FormatPattern(volts, "##.00") + "</V1><A1>" + FormatPattern(amps1, "##0.0") +
           "</A1><A2>" + FormatPattern(amps2, "##0.0") +
           "</A2><A3>0.0</A3><A4>0.0</A4><R2>0</R2><R1>" + FormatPattern(rpm, "###0") +
           "</R1><WS>" + FormatPattern(wind, "##0") + "</WS>";
}

}  // namespace brizalog::testing
