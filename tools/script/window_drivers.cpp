#include "window_driver.h"

namespace brizalog::script {

std::vector<std::unique_ptr<WindowDriver>> MakeWindowDrivers() {
    return {};
}

}  // namespace brizalog::script
