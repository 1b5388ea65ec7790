#include "meter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brizalog::boardsim {

namespace {

// What each appliance monitor draws when its appliance runs: fridge, washing machine, kettle,
// television, dishwasher, heat pump, computer, tumble dryer, (9 is the mains of the plant).
constexpr double kApplianceWatts[10] = {0, 120, 2100, 2900, 95, 1800, 2400, 180, 2600, 0};

std::string Format(const char* pattern, auto... values) {
    char text[160];
    std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

std::string Clock(const MeterTime& t) {
    return Format("%02d:%02d:%02d", t.hour, t.minute, t.second);
}

}  // namespace

int LineSpeed(MeterModel model) {
    return model == MeterModel::Classic ? 9600 : 57600;
}

Meter::Meter(MeterSetup setup, unsigned seed) : m_setup(std::move(setup)), m_random(seed) {}

double Meter::SensorWatts(const Installation& plant, int sensor, int channel) const {
    if (sensor == 0 || sensor == 9) {
        return plant.meterWatts(sensor, channel);
    }
    return m_applianceWatts[sensor];
}

std::string Meter::LiveMessage(const Installation& plant, const MeterTime& time, int sensor) const {
    const double celsius = plant.meterTemperature() + (sensor == 0 ? -1.5 : 0.0);
    const std::string temperature = m_setup.fahrenheit
                                        ? Format("<tmprF>%.1f</tmprF>", celsius * 9.0 / 5.0 + 32.0)
                                        : Format("<tmpr>%.1f</tmpr>", celsius);
    // The house and the plant's mains have three clamps; an appliance monitor has one.
    const int channels = m_setup.model == MeterModel::Classic || sensor == 0 || sensor == 9 ? 3 : 1;
    std::string watts;
    for (int channel = 1; channel <= channels; ++channel) {
        watts += Format("<ch%d><watts>%05ld</watts></ch%d>", channel,
                        std::lround(std::max(0.0, SensorWatts(plant, sensor, channel))), channel);
    }
    if (m_setup.model == MeterModel::Classic) {
        return Format(
                   "<msg><date><dsb>%05d</dsb><hr>%02d</hr><min>%02d</min><sec>%02d</sec></date>",
                   time.days, time.hour, time.minute, time.second) +
               "<src><name>CC02</name><id>03112</id><type>1</type><sver>0.07</sver></src>" + watts +
               temperature;
    }
    return Format("<msg><src>CC128-v0.11</src><dsb>%05d</dsb><time>", time.days) + Clock(time) +
           "</time>" + temperature +
           Format("<sensor>%d</sensor><id>%05d</id><type>1</type>", sensor,
                  1234 + 1111 * sensor % 60000) +
           watts + "</msg>\r\n";
}

// The Classic's history: two-hourly, daily, monthly and yearly totals, in every message.
std::string Meter::ClassicHistory() {
    std::uniform_real_distribution<double> kwh(0.2, 3.0);
    std::string text = "<hist><hrs>";
    for (int h = 2; h <= 26; h += 2) {
        text += Format("<h%02d>%05.1f</h%02d>", h, kwh(m_random), h);
    }
    text += "</hrs><days>";
    for (int d = 1; d <= 31; ++d) {
        text += Format("<d%02d>%04ld</d%02d>", d, std::lround(12 * kwh(m_random)), d);
    }
    text += "</days><mths>";
    for (int m = 1; m <= 12; ++m) {
        text += Format("<m%02d>%04ld</m%02d>", m, std::lround(300 * kwh(m_random)), m);
    }
    text += "</mths><yrs>";
    for (int y = 1; y <= 4; ++y) {
        text += Format("<y%d>%07ld</y%d>", y, std::lround(3000 * kwh(m_random)), y);
    }
    return text + "</yrs></hist>";
}

// Four messages of two-hourly totals, two of days and one of months, each with a <data> group
// per sensor.
std::vector<std::string> Meter::HistoryBurst(const MeterTime& time) {
    std::uniform_real_distribution<double> kwh(0.0, 2.5);
    struct Block {
        char letter;
        int first;
        int count;
        int step;
    };
    static constexpr Block kBlocks[] = {{'h', 4, 4, 2},  {'h', 12, 4, 2}, {'h', 20, 4, 2},
                                        {'h', 28, 4, 2}, {'d', 1, 7, 1},  {'d', 8, 7, 1},
                                        {'m', 1, 4, 1}};
    std::vector<std::string> burst;
    for (const Block& block : kBlocks) {
        std::string text = Format("<msg><src>CC128-v0.11</src><dsb>%05d</dsb><time>", time.days) +
                           Clock(time) + "</time><hist><dsw>" + Format("%05d", time.days) +
                           "</dsw><type>1</type><units>kwhr</units>";
        for (int sensor : m_setup.sensors) {
            text += Format("<data><sensor>%d</sensor>", sensor);
            for (int i = 0; i < block.count; ++i) {
                const int slot = block.first + i * block.step;
                const double scale = block.letter == 'h' ? 1.0 : block.letter == 'd' ? 12.0 : 360.0;
                text += Format("<%c%03d>%05.1f</%c%03d>", block.letter, slot, scale * kwh(m_random),
                               block.letter, slot);
            }
            text += "</data>";
        }
        burst.push_back(text + "</hist></msg>\r\n");
    }
    return burst;
}

std::string Meter::Cycle(const Installation& plant, const MeterTime& time) {
    // Appliances switch on and off now and then.
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    for (int sensor = 1; sensor <= 8; ++sensor) {
        if (unit(m_random) < 0.02) {
            m_applianceWatts[sensor] = m_applianceWatts[sensor] > 0
                                           ? 0.0
                                           : kApplianceWatts[sensor] * (0.9 + 0.2 * unit(m_random));
        }
    }
    if (m_setup.model == MeterModel::Classic) {
        return LiveMessage(plant, time, 0) + ClassicHistory() + "</msg>\r\n";
    }
    std::string text;
    bool first = true;
    for (int sensor : m_setup.sensors) {
        text += LiveMessage(plant, time, sensor);
        if (first && time.hour % 2 == 1 && time.minute == 1 && m_lastBurstHour != time.hour) {
            m_lastBurstHour = time.hour;
            for (const std::string& message : HistoryBurst(time)) {
                text += message;
            }
        }
        first = false;
    }
    return text;
}

SerialLine::SerialLine(int minChunk, int maxChunk, double drop, unsigned seed)
    : m_minChunk(std::max(1, minChunk)),
      m_maxChunk(std::max(m_minChunk, maxChunk)),
      m_drop(drop),
      m_random(seed) {}

std::vector<std::string> SerialLine::Deliver(const std::string& burst) {
    std::string kept;
    if (m_drop > 0) {
        std::bernoulli_distribution lost(m_drop);
        for (char c : burst) {
            if (!lost(m_random)) {
                kept += c;
            }
        }
    } else {
        kept = burst;
    }
    std::uniform_int_distribution<int> size(m_minChunk, m_maxChunk);
    std::vector<std::string> pieces;
    for (std::size_t at = 0; at < kept.size();) {
        const std::size_t length = static_cast<std::size_t>(size(m_random));
        pieces.push_back(kept.substr(at, length));
        at += length;
    }
    return pieces;
}

}  // namespace brizalog::boardsim
