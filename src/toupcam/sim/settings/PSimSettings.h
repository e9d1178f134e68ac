// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimMeter.h>
#include <toupcam/sim/frame/PSimShot.h>
#include <toupcam/sim/settings/PSimAutoExposure.h>
#include <toupcam/sim/settings/PSimOptions.h>
#include <toupcam/sim/settings/PSimScalarSettings.h>
#include <toupcam/sim/settings/PSimThermal.h>
#include <toupcam/sim/timing/PSimShutter.h>

#include <chrono>
#include <memory>
#include <mutex>

/// The settings of one session with a camera, checked against what the model can do; they start at
/// power-on values. Results are SDK codes: E_INVALIDARG out of range, E_NOTIMPL if this model
/// cannot, E_POINTER for a null output. Callable from any thread.
class PSimSettings {
public:
    PSimSettings(std::shared_ptr<const PSimCameraSpec> spec, std::shared_ptr<PSimThermal> thermal);

    /// Sets an option of Toupcam_put_Option; see PSimOptions.
    HRESULT setOption(unsigned option, int value);
    /// An option's value: as set, or the cooler's voltage now.
    HRESULT option(unsigned option, int* value) const;
    /// Accepts 0, 1 and 2, which have the same effect: nothing is ever queued.
    HRESULT setRealTime(int value);

    /// The cooler's target, 0.1 degrees C, -500 … 400.
    HRESULT setTargetTemperature(short target);
    /// The sensor's temperature now, 0.1 degrees C; E_NOTIMPL without a cooler.
    HRESULT temperature(short* output) const;

    /// One of the settings of PSimScalarSettings.
    HRESULT setScalar(PSimScalar scalar, int value);
    HRESULT scalar(PSimScalar scalar, int* value) const;
    /// White balance: temperature in kelvin and tint. Sets both or neither.
    HRESULT setTempTint(int temperature, int tint);
    HRESULT tempTint(int* temperature, int* tint) const;

    /// A different resolution resets the region to the whole sensor.
    HRESULT setResolution(unsigned index);
    unsigned resolution() const;
    /// In pixels of the resolution; all 0: the whole sensor.
    HRESULT setRegion(const PSimRegion& region);
    PSimRegion region() const;
    /// Size of the frames as they are delivered.
    PSimSize finalSize() const;
    HRESULT setSpeed(unsigned short level);
    unsigned short speed() const;

    /// Whether auto-exposure is on.
    HRESULT setAutoExposure(bool on);
    bool autoExposure() const;
    /// The mean brightness that auto-exposure aims at, 10 … 235.
    HRESULT setTarget(unsigned short target);
    unsigned short target() const;
    /// Exposure time and gain within the model's ranges, whether auto-exposure is on or not.
    HRESULT setExposureTime(unsigned microseconds);
    HRESULT setGain(unsigned short percent);
    PSimExposure exposure() const;

    /// The settings of the next frame.
    PSimShot shot() const;
    /// The same for a picture at any resolution, of the same part of the sensor.
    PSimShot shotAt(unsigned resolution) const;
    /// When frames fall due: the trigger mode, and the slowest of sensor, speed level, link,
    /// frame-rate limit and exposure time.
    PSimPace pace() const;
    /// Lets auto-exposure, if it is on, adapt to a frame of this mean brightness (0 … 255). True
    /// if it changed time or gain.
    bool adapt(double mean);
    /// Makes the white balance neutral for a picture with these means.
    void balance(const PSimMeans& means);

private:
    bool hasCooler() const { return (m_spec->flags & TOUPCAM_FLAG_TEC_ONOFF) != 0; }
    PSimCooling cooling() const;
    PSimShot makeShot(unsigned resolution) const;
    PSimGeometry makeGeometry(unsigned resolution) const;
    PSimImageSettings imageSettings() const;
    double framesPerSecond() const;

    std::shared_ptr<const PSimCameraSpec> m_spec;
    std::shared_ptr<PSimThermal> m_thermal;
    PSimAutoExposure m_rule;
    mutable std::mutex m_mutex; // guards all below
    PSimOptions m_options;
    PSimScalarSettings m_scalars;
    int m_targetTemperature = PSimCooling().target;
    unsigned m_resolution = 0;
    PSimRegion m_region;
    unsigned short m_speed = 0;
    bool m_auto = true;
    unsigned short m_target = 0;
    PSimExposure m_exposure;
};
