#pragma once

#include <memory>

#include "window_driver.h"

namespace brizalog::script {

// The Energy window: energy by day, week, month and year from the logs folder.
std::unique_ptr<WindowDriver> MakeEnergyDriver();

}  // namespace brizalog::script
