#pragma once

#include <random>
#include <string>
#include <vector>

#include "installation.h"

namespace brizalog::boardsim {

// Which Current Cost display the simulator is: the Classic (CC02), which speaks at 9600 baud and
// carries its whole history inside every live message, or the CC128 (EnviR), which speaks at
// 57600 baud, one message per sensor, and sends its history in bursts of messages of their own.
enum class MeterModel { Classic, CC128 };

struct MeterSetup {
    MeterModel model = MeterModel::CC128;
    // Sensor 0 is the whole house, 1 to 9 appliance monitors; the house speaks first in each
    // cycle and the others right behind it, in this order.
    std::vector<int> sensors = {0};
    bool fahrenheit = false;  // <tmprF> in place of <tmpr>
};

// The meter's clock as it writes it: days since it was switched on, and the time of day.
struct MeterTime {
    int days = 89;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

int LineSpeed(MeterModel model);  // baud

// A Current Cost display with its sensors. Each call of Cycle gives the text the meter writes
// in one 6-second cycle, messages back to back, each ended by CR LF.
class Meter {
public:
    explicit Meter(MeterSetup setup, unsigned seed = 20260307);

    // One cycle at `time`. The CC128 adds its history burst behind the house's message in the
    // first cycle of minute 1 of each odd hour, as the meters do.
    std::string Cycle(const Installation& plant, const MeterTime& time);

    // One sensor's live message; the Classic's without its history and end, which Cycle adds.
    std::string LiveMessage(const Installation& plant, const MeterTime& time, int sensor) const;
    std::vector<std::string> HistoryBurst(const MeterTime& time);

    MeterModel model() const { return m_setup.model; }

private:
    double SensorWatts(const Installation& plant, int sensor, int channel) const;
    std::string ClassicHistory();

    MeterSetup m_setup;
    std::mt19937 m_random;
    double m_applianceWatts[10] = {};
    int m_lastBurstHour = -1;
};

// How a USB serial adapter hands a line over: in pieces of `minChunk` to `maxChunk` bytes, and,
// on a poor line, without the bytes lost with probability `drop`. A text given at once is one
// burst of the line; the adapter flushes at its end, so pieces never join two bursts.
class SerialLine {
public:
    SerialLine(int minChunk, int maxChunk, double drop, unsigned seed = 20260307);
    std::vector<std::string> Deliver(const std::string& burst);

private:
    int m_minChunk;
    int m_maxChunk;
    double m_drop;
    std::mt19937 m_random;
};

}  // namespace brizalog::boardsim
