#include "energy_driver.h"
#include "history_driver.h"
#include "monitor_driver.h"
#include "setup_driver.h"
#include "window_driver.h"

namespace brizalog::script {

std::vector<std::unique_ptr<WindowDriver>> MakeWindowDrivers() {
    std::vector<std::unique_ptr<WindowDriver>> drivers;
    drivers.push_back(MakeHistoryDriver());
    drivers.push_back(MakeMonitorDriver());
    drivers.push_back(MakeSetupDriver());
    drivers.push_back(MakeEnergyDriver());
    return drivers;
}

}  // namespace brizalog::script
