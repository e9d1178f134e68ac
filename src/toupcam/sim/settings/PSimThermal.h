// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/scene/PSimScene.h>

#include <chrono>
#include <mutex>

/// The cooler and fan settings of the client.
struct PSimCooling {
    bool cooler = false;
    int target = 150; ///< of the sensor, 0.1 degrees C
    int fan = 0;      ///< level
};

/// The heat of a camera, in time that passes `thermalSpeed` times as fast as the clock. The sensor
/// takes on the temperature T of its surroundings exponentially (Newton's law of cooling):
///
///     dT/dt = (U - share x C - T) / 40 s
///
/// U is the air's temperature plus the camera's own heat, 3 K, and 9 K more while it streams; the
/// fan carries up to half of that away. C is the cooler's effect at full voltage: 45 K with the
/// fan at its highest level, 40 % of that without. The cooler's voltage, `share` of the highest, is
/// what holds the target, plus a quarter of it for each degree that is missing. Callable from any
/// thread.
class PSimThermal {
public:
    static constexpr int highestVoltage = 120; ///< 0.1 V

    explicit PSimThermal(const PSimCameraSpec& spec);

    /// Applies other settings from now on.
    void drive(const PSimCooling& cooling);
    /// To be called when a stream begins and when it ends.
    void streamBegins() { changeStreams(1); }
    void streamEnds() { changeStreams(-1); }

    /// The sensor's temperature now, degrees C.
    double celsius();
    /// The cooler's voltage now, 0.1 V.
    int voltage();

private:
    using Clock = std::chrono::steady_clock;

    void changeStreams(int by);
    void advance();
    void step(double seconds);
    double fanShare() const;
    double uncooled() const;
    double mostCooling() const;
    double voltageShare() const;

    const double m_ambient;
    const double m_speed;
    const unsigned m_fanLevels;
    std::mutex m_mutex; // guards all below
    PSimCooling m_cooling;
    int m_streams = 0;
    double m_celsius;
    Clock::time_point m_when;
};
