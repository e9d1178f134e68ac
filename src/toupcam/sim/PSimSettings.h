// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/PSimAutoExposure.h>
#include <toupcam/sim/PSimScene.h>
#include <toupcam/toupcam.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>

/// What one frame is taken with.
struct PSimShot {
    unsigned resolution = 0;
    bool blueFirst = false;
    double exposureMs = 0.0;
    double gain = 1.0;
};

/// The settings of one session with a camera, checked against what the model can do; they start at
/// power-on values. Results are SDK codes: E_INVALIDARG out of range, E_NOTIMPL if this model
/// cannot, E_POINTER for a null output. Callable from any thread.
class PSimSettings {
public:
    explicit PSimSettings(std::shared_ptr<const PSimCameraSpec> spec);

    HRESULT setOption(unsigned option, int value);
    HRESULT option(unsigned option, int* value) const;
    HRESULT setRealTime(int value);

    HRESULT setResolution(unsigned index);
    unsigned resolution() const;
    HRESULT setSpeed(unsigned short level);
    unsigned short speed() const;

    HRESULT setAutoExposure(bool on);
    bool autoExposure() const;
    HRESULT setTarget(unsigned short target);
    unsigned short target() const;
    HRESULT setExposureTime(unsigned microseconds);
    HRESULT setGain(unsigned short percent);
    PSimExposure exposure() const;

    /// What the next frame is taken with.
    PSimShot shot() const;
    /// Time from frame to frame: the slowest of sensor, speed level, link, frame-rate limit and
    /// exposure time.
    std::chrono::nanoseconds period() const;
    /// Lets auto-exposure, if it is on, answer a frame of this mean brightness (0 … 255). True if
    /// it changed time or gain.
    bool adapt(double mean);

private:
    HRESULT checkOption(unsigned option, int value) const;
    double framesPerSecond() const;

    std::shared_ptr<const PSimCameraSpec> m_spec;
    PSimAutoExposure m_rule;
    mutable std::mutex m_mutex; // guards all below
    std::map<unsigned, int> m_options;
    unsigned m_resolution = 0;
    unsigned short m_speed = 0;
    bool m_auto = true;
    unsigned short m_target = 0;
    PSimExposure m_exposure;
};
