// SPDX-License-Identifier: MIT
#pragma once

/// While this object exists the camera returns these values, for readings that a simulated camera
/// cannot produce. All other calls are passed through. One at a time; the test's thread.
class SdkReadings {
public:
    SdkReadings(int temperature, int voltage, int highestVoltage);
    ~SdkReadings();
    SdkReadings(const SdkReadings&) = delete;
    SdkReadings& operator=(const SdkReadings&) = delete;

    /// The value returned for an option; null for one that passes through.
    const int* option(unsigned number) const;
    short temperature() const { return m_temperature; }

    /// The existing object, or null.
    static const SdkReadings* current();

private:
    short m_temperature;
    int m_voltage;
    int m_highestVoltage;
};
