#include "catalogue/channels.h"

namespace brizalog {

// Default colours cycle through 16711680, 255, 65280, 65535 inside each family.
const std::array<ChannelDefaults, kChannelCount + 1> kChannelDefaults{{
    {0, 0, 0, 0, "", 0, 0, ""},
    {1, 1, 1, 1, "WINDMILL AMPS", 16711680, 20, "A1"},
    {0, 0, 0, 0, "channel name", 255, 20, "A2"},
    {0, 0, 0, 0, "channel name", 65280, 20, "A3"},
    {0, 0, 0, 0, "channel name", 65535, 20, "A4"},
    {0, 0, 0, 0, "channel name", 16711680, 20, "A5"},
    {0, 0, 0, 0, "channel name", 255, 20, "A6"},
    {0, 0, 0, 0, "channel name", 65280, 20, "A7"},
    {0, 0, 0, 0, "channel name", 65535, 20, "A8"},
    {1, 1, 1, 1, "SYSTEM VOLTS", 16711935, 60, "V1"},
    {0, 0, 0, 0, "channel name", 8421631, 30, "V2"},
    {0, 0, 0, 0, "channel name", 8438015, 30, "V3"},
    {1, 1, 1, 1, "WINDSPEED", 16776960, 50, "WS"},
    {1, 1, 1, 1, "WINDMILL RPM", 33023, 500, "R1"},
    {0, 0, 0, 0, "channel name", 12648384, 500, "R2"},
    {0, 0, 0, 0, "channel name", 255, 1000, "P1"},
    {0, 0, 0, 0, "channel name", 16711680, 1000, "P2"},
    {1, 1, 1, 1, "WINDMILL POWER", 16711680, 1000, "W1"},
    {0, 0, 0, 0, "channel name", 255, 1000, "W2"},
    {0, 0, 0, 0, "channel name", 65280, 1000, "W3"},
    {0, 0, 0, 0, "channel name", 65535, 1000, "W4"},
    {0, 0, 0, 0, "channel name", 16711680, 1000, "W5"},
    {0, 0, 0, 0, "channel name", 255, 1000, "W6"},
    {0, 0, 0, 0, "channel name", 65280, 1000, "W7"},
    {0, 0, 0, 0, "channel name", 65535, 1000, "W8"},
}};

}  // namespace brizalog
