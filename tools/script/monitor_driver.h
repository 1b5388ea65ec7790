#pragma once

#include <memory>

#include "window_driver.h"

namespace brizalog::script {

// The monitor windows: dataTOlog, dailyMaximums, BATTMonitor, BATTMonitor2, BarGraphs,
// plotDiagnostics, rawCOMMS and displayRAWdata. None is modal: the script goes on at once.
std::unique_ptr<WindowDriver> MakeMonitorDriver();

}  // namespace brizalog::script
