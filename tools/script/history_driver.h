#pragma once

#include <memory>

#include "window_driver.h"

namespace brizalog::script {

// The six graph windows: GraphBZ, GraphDEMO, GraphRE, GraphML, GraphCC and GraphCC_QX.
std::unique_ptr<WindowDriver> MakeHistoryDriver();

}  // namespace brizalog::script
