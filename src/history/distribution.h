#pragma once

#include <vector>

#include "history/graph_window.h"

namespace brizalog {

// The largest band number the bin table holds: 301 bins, 0 to 300.
inline constexpr int kMaxBands = 300;

// Record counts of the power bands: bin j counts the records i from `first` to `last` whose power
// w is over 10j − 1 and under 10(j + 1), for j from 0 to `bands` − 1. The bands overlap by design:
// 9.5 W counts in bins 0 and 1, exactly 9 only in bin 0, exactly 10 only in bin 1. Bin `bands`
// stays 0. Power of −1 or less and of 10 × `bands` or more is in no bin. One pass over the
// records gives the same counts as a pass per band. `bins` gets bands + 1 entries.
void CountPowerBands(const RecordArray& watts, int first, int last, int bands,
                     std::vector<double>& bins);

}  // namespace brizalog
