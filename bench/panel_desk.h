#pragma once

#include <string>

#include "support/virtual_desk.h"

// System 8 with every channel on the panel, started and laid out, as the window benchmarks
// measure it. Frame() is one frame through the serial event and the main window.
struct PanelDesk : brizalog::testing::VirtualDesk {
    PanelDesk() {
        ShowSystem(8);
        window->Render();
    }
    void Frame() {
        serial.Queue(frame);
        form->MSComm1_OnComm();
        window->Render();
    }
    const std::string frame = brizalog::testing::SampleFrame(8);
};
