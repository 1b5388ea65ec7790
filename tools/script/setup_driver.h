#pragma once

#include <memory>

#include "window_driver.h"

namespace brizalog::script {

// The setup and help windows: ProgramSetup and the port search FindComms that it opens, the four
// channel forms, TextInput, XMLcodeINPUT, ColourCHART, CALIBRATION and the help viewer info.
std::unique_ptr<WindowDriver> MakeSetupDriver();

}  // namespace brizalog::script
