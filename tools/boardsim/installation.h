#pragma once

#include <random>
#include <string>

namespace brizalog::boardsim {

// A small renewable-energy installation that changes believably from second to second: a wind
// that gusts and lulls, two turbines whose power follows the cube of the wind, a solar array
// that follows the sun, loads that switch on and off, and a 12 V battery bank between them.
// Readings are engineering units; the frames turn them into the raw counts of the board, which
// the default calibration (offset 0, factor 0.10) turns back into the same readings.
class Installation {
public:
    explicit Installation(unsigned seed = 20260307);

    // Moves the installation on by `seconds`; `hourOfDay` (0 to 24) drives the sun.
    void Advance(double seconds, double hourOfDay);

    double batteryVolts() const { return m_batteryVolts; }     // 12.0 to 14.5 V
    double bank2Volts() const { return m_bank2Volts; }         // a 24 V bank
    double starterVolts() const { return m_starterVolts; }     // a 12 V starter battery
    double windSpeed() const { return m_wind; }                // m/s
    double turbineRpm(int turbine) const;                      // 1 or 2
    double turbineWatts(int turbine) const;                    // 1 or 2, cube of the wind
    double turbineAmps(int turbine) const;                     // into the battery bank
    double solarAmps() const { return m_solarAmps; }           // into the battery bank
    double loadAmps(int load) const;                           // loads 1 to 5, DC or mains
    double pulses(int input) const;                            // inputs 1 and 2, per frame
    double meterTemperature() const { return m_temperature; }  // °C, inside the house
    double meterWatts(int sensor, int channel) const;          // sensor 0 or 9, channel 1..3

private:
    std::mt19937 m_random;
    double m_wind = 6.0;
    double m_windTarget = 6.0;
    double m_batteryVolts = 12.9;
    double m_bank2Volts = 26.2;
    double m_starterVolts = 12.7;
    double m_solarAmps = 0.0;
    double m_temperature = 21.0;
    bool m_loadOn[6] = {false, true, false, false, true, false};
    double m_loadAmps[6] = {0.0, 6.5, 2.5, 10.0, 0.8, 3.5};
    double m_secondsToGust = 0.0;
    double m_pulses[3] = {0, 0, 0};
    double m_mainsWatts[3] = {350.0, 120.0, 0.0};
    double m_houseWatts[3] = {180.0, 60.0, 1200.0};
};

// One frame or message of system type `systemType` (0 to 8) with the installation's readings.
// `sensor` chooses the sensor of a system 4 message (9 or 0).
std::string ComposeFrame(const Installation& installation, int systemType, int sensor);

}  // namespace brizalog::boardsim
