#include "installation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace brizalog::boardsim {

namespace {

constexpr double kCutInWind = 2.5;  // m/s below which the turbines stand still

double Clamp(double value, double low, double high) {
    return std::min(high, std::max(low, value));
}

// The raw count of the board for a reading, under the default factor of 0.10 per count.
long Raw(double reading) {
    return std::lround(std::max(0.0, reading) * 10.0);
}

void Element(std::string& frame, const char* tag, long value) {
    char text[64];
    std::snprintf(text, sizeof text, "<%s>%ld</%s>", tag, value, tag);
    frame += text;
}

// A Current Cost meter writes its watts with five digits and leading zeros.
void MeterChannel(std::string& message, int channel, double watts) {
    char text[80];
    std::snprintf(text, sizeof text, "<ch%d><watts>%05ld</watts></ch%d>", channel,
                  std::lround(std::max(0.0, watts)), channel);
    message += text;
}

}  // namespace

Installation::Installation(unsigned seed) : m_random(seed) {}

void Installation::Advance(double seconds, double hourOfDay) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::normal_distribution<double> noise(0.0, 1.0);

    // Wind: drifts towards a target that changes every half minute to two minutes, with gusts.
    m_secondsToGust -= seconds;
    if (m_secondsToGust <= 0) {
        m_windTarget = 2.0 + 11.0 * unit(m_random);
        m_secondsToGust = 30.0 + 90.0 * unit(m_random);
    }
    const double pull = std::min(1.0, seconds / 20.0);
    m_wind += (m_windTarget - m_wind) * pull + 0.6 * std::sqrt(seconds) * noise(m_random);
    m_wind = Clamp(m_wind, 0.0, 18.0);

    // The sun: up from six to eighteen o'clock, with passing clouds.
    const double sun = std::sin((hourOfDay - 6.0) / 12.0 * 3.14159265358979);
    const double cloud = 0.75 + 0.25 * unit(m_random);
    m_solarAmps = sun > 0 ? 8.0 * sun * cloud : 0.0;

    // Loads switch on and off now and then, a few times an hour each.
    for (int load = 1; load <= 5; ++load) {
        if (unit(m_random) < seconds / 120.0) {
            m_loadOn[load] = !m_loadOn[load];
        }
    }

    // The battery bank follows its net charging current, within 12.0 and 14.5 V.
    double net = turbineAmps(1) + turbineAmps(2) + m_solarAmps;
    for (int load = 1; load <= 5; ++load) {
        net -= loadAmps(load);
    }
    const double resting = Clamp(12.7 + 0.045 * net, 12.0, 14.5);
    m_batteryVolts += (resting - m_batteryVolts) * std::min(1.0, seconds / 30.0);
    m_batteryVolts = Clamp(m_batteryVolts + 0.01 * noise(m_random), 12.0, 14.5);
    m_bank2Volts = Clamp(m_bank2Volts + 0.02 * noise(m_random), 24.6, 27.8);
    m_starterVolts = Clamp(m_starterVolts + 0.01 * noise(m_random), 12.4, 12.9);

    for (double& count : m_pulses) {
        count = std::floor(4.0 * unit(m_random) * seconds);
    }

    m_temperature = Clamp(m_temperature + 0.05 * noise(m_random), 17.0, 25.0);
    for (int channel = 0; channel < 3; ++channel) {
        if (unit(m_random) < seconds / 90.0) {
            m_mainsWatts[channel] = unit(m_random) < 0.4 ? 0.0 : 100.0 + 1900.0 * unit(m_random);
        }
        if (unit(m_random) < seconds / 60.0) {
            m_houseWatts[channel] = unit(m_random) < 0.3 ? 0.0 : 40.0 + 900.0 * unit(m_random);
        }
    }
}

double Installation::turbineRpm(int turbine) const {
    if (m_wind < kCutInWind) {
        return 0.0;
    }
    return std::min(480.0, (turbine == 1 ? 32.0 : 27.0) * m_wind);
}

double Installation::turbineWatts(int turbine) const {
    if (m_wind < kCutInWind) {
        return 0.0;
    }
    const double cube = m_wind * m_wind * m_wind;
    return turbine == 1 ? std::min(1200.0, 0.35 * cube) : std::min(900.0, 0.25 * cube);
}

double Installation::turbineAmps(int turbine) const {
    return turbineWatts(turbine) / m_batteryVolts;
}

double Installation::loadAmps(int load) const {
    return m_loadOn[load] ? m_loadAmps[load] : 0.0;
}

double Installation::pulses(int input) const {
    return m_pulses[input];
}

double Installation::meterWatts(int sensor, int channel) const {
    return sensor == 0 ? m_houseWatts[channel - 1] : m_mainsWatts[channel - 1];
}

std::string ComposeFrame(const Installation& plant, int systemType, int sensor) {
    std::string frame;
    if (systemType == 0) {
        // The demonstration board: fixed tags, one turbine and the battery bank.
        frame = "[";
        Element(frame, "V", Raw(plant.batteryVolts()));
        Element(frame, "I", Raw(plant.turbineAmps(1)));
        Element(frame, "S", Raw(plant.windSpeed()));
        Element(frame, "R", Raw(plant.turbineRpm(1)));
        frame += "]";
    } else if (systemType == 3 || systemType == 4) {
        char head[160];
        const int id = systemType == 3 ? 77 : (sensor == 9 ? 1234 : 4321);
        if (systemType == 3) {
            std::snprintf(head, sizeof head,
                          "<msg><date><dsb>00012</dsb><hr>12</hr><min>00</min><sec>00</sec>"
                          "</date><src><name>CC02</name><id>%05d</id><type>1</type></src>",
                          id);
        } else {
            std::snprintf(head, sizeof head,
                          "<msg><src>CC128-v0.11</src><dsb>00012</dsb><time>12:00:00</time>"
                          "<sensor>%d</sensor><id>%05d</id><type>1</type>",
                          sensor, id);
        }
        frame = head;
        char temperature[48];
        std::snprintf(temperature, sizeof temperature, "<tmpr>%.1f</tmpr>",
                      plant.meterTemperature() + (sensor == 0 ? -1.5 : 0.0));
        frame += temperature;
        for (int channel = 1; channel <= 3; ++channel) {
            MeterChannel(frame, channel, plant.meterWatts(systemType == 3 ? 9 : sensor, channel));
        }
        frame += "</msg>\r\n";
    } else {
        // Every other board carries the tags of a new channel table: A1 and A2 the turbines,
        // A3 the solar array, A4 to A8 the loads, V1 to V3 the banks, WS, R1, R2, P1, P2.
        frame = "[";
        Element(frame, "A1", Raw(plant.turbineAmps(1)));
        Element(frame, "A2", Raw(plant.turbineAmps(2)));
        Element(frame, "A3", Raw(plant.solarAmps()));
        for (int load = 1; load <= 5; ++load) {
            const std::string tag = "A" + std::to_string(load + 3);
            Element(frame, tag.c_str(), Raw(plant.loadAmps(load)));
        }
        Element(frame, "V1", Raw(plant.batteryVolts()));
        Element(frame, "V2", Raw(plant.bank2Volts()));
        Element(frame, "V3", Raw(plant.starterVolts()));
        Element(frame, "WS", Raw(plant.windSpeed()));
        Element(frame, "R1", Raw(plant.turbineRpm(1)));
        Element(frame, "R2", Raw(plant.turbineRpm(2)));
        Element(frame, "P1", Raw(plant.pulses(1)));
        Element(frame, "P2", Raw(plant.pulses(2)));
        frame += "]";
    }
    return frame;
}

}  // namespace brizalog::boardsim
