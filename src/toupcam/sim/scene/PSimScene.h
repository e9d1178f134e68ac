// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimGeometry.h>

#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

/// The description of the simulated world from a scene text. Plain values: parsed and checked once
/// by PSimSceneReader, never changed afterwards.

/// One resolution of a camera.
struct PSimResolution {
    unsigned width = 0;
    unsigned height = 0;
    double framesPerSecond = 30.0; ///< at the highest speed level, before any other limit

    PSimSize size() const { return {width, height}; }
};

/// What lies under the lens.
struct PSimSourceSpec {
    /// What it shows.
    enum class Kind {
        Tissue,       ///< procedural stained tissue section in bright field
        Fluorescence, ///< procedural fluorescent cells on a dark background
        Flat,         ///< even light, no specimen, for measuring a photon-transfer curve
        Picture,      ///< picture files of the user
        Patches,      ///< pure red, green and blue patches on black, without noise
        Ring          ///< ready-made frames that cost nothing to produce
    };
    Kind kind = Kind::Tissue;
    std::vector<QString> pictures; ///< Picture: files, shown one after the other
    unsigned framesEach = 30;      ///< Picture: frames before the next file is shown
    double level = 0.5;            ///< Flat: share of full light, 0 … 1
    double mainsHz = 0.0;          ///< that feeds the lamp; 0: direct current
    double lightKelvin = 6503.0;   ///< colour temperature of the lamp
    unsigned drift = 0;            ///< slow stage drift, pixels to either side
    unsigned ringFrames = 4;       ///< Ring: number of different frames
    bool unpaced = false;          ///< Ring: as fast as the callback returns
};

/// The sensor: how light becomes numbers.
struct PSimSensorSpec {
    double fullWell = 15000.0;       ///< electrons a pixel can hold
    double electronsPerCount = 59.0; ///< electrons for one count at 100 % gain
    double offset = 2.0;             ///< counts without light
    double readNoise = 5.0;          ///< electrons, root mean square
    double electronsPerMs = 1350.0;  ///< electrons a millisecond where the light is full
    double darkCurrent = 0.0;        ///< electrons a second at 25 degrees C, without light
};

/// The range of the exposure time, and auto-exposure.
struct PSimExposureSpec {
    unsigned minimum = 50; ///< microseconds, as all of these
    unsigned maximum = 15000000;
    unsigned initial = 10000;
    bool automatic = true;
    unsigned short target = 120; ///< mean brightness auto-exposure aims at
    unsigned automaticMaximum = 350000;
};

/// The range of the gain.
struct PSimGainSpec {
    unsigned short minimum = 100; ///< per cent, as all of these
    unsigned short maximum = 500;
    unsigned short initial = 100;
};

/// What is connected to the trigger input.
struct PSimExternalTriggerSpec {
    std::chrono::microseconds period{0}; ///< 0: nothing
    std::uint64_t count = 0;             ///< signals after the stream's start; 0: without end
};

/// One simulated camera.
struct PSimCameraSpec {
    std::optional<QByteArray> model; ///< UTF-8; none: the record's name pointer is null
    QByteArray displayName;          ///< UTF-8, at most 63 bytes
    QByteArray id;                   ///< ASCII, 1 … 64 characters
    QByteArray serial;               ///< UTF-8, at most 31 bytes
    std::uint64_t flags = 0;
    std::vector<PSimResolution> resolutions;
    PSimExposureSpec exposure;
    PSimGainSpec gain;
    unsigned speedLevels = 1;
    unsigned bits = 24; ///< 8 grey, 24 colour
    float pixelSize = 2.4F;
    unsigned fanLevels = 0;
    double ambientCelsius = 22.0; ///< of the air around it
    double thermalSpeed = 1.0;    ///< thermal seconds a second
    double linkMegabytes = 0.0;   ///< payload of the link, 10^6 bytes a second; 0: no limit
    PSimSourceSpec source;
    PSimSensorSpec sensor;
    PSimExternalTriggerSpec externalTrigger;
    bool plugged = true;

    bool isColour() const { return bits == 24; }
    /// Whether region, binning and rotation exist; ready-made frames are never processed.
    bool hasGeometry() const { return source.kind != PSimSourceSpec::Kind::Ring; }
};

/// One step of the fault plan.
struct PSimFaultSpec {
    /// What the step does.
    enum class Action {
        Unplug,
        Plug,
        Hold,
        Release,
        Event,
        PushMalformed,
        Lose,
        DropTrigger,
        Fail,
        Delay,
        ReportSize,
        Answer
    };
    Action action = Action::Unplug;
    QByteArray camera;                        ///< id; empty for Fail and the kinds after it
    std::optional<std::uint64_t> afterFrames; ///< frames taken by that camera since scene load
    std::optional<unsigned> atMs;             ///< since the scene was loaded
    unsigned event = 0;                       ///< Event: the code
    int width = 0; ///< PushMalformed: what the header says; ReportSize: what is reported
    int height = 0;
    unsigned short bits = 24;
    unsigned sizeImage = 0;
    double probability = 0.0; ///< Lose: of each frame
    std::uint64_t nth = 1;    ///< DropTrigger: of the triggered frames since scene load, from 1
    QByteArray function;      ///< Fail, Delay, ReportSize
    std::optional<unsigned> option;
    unsigned skip = 0;
    unsigned count = 0;
    int result = 0;
    unsigned ms = 0; ///< Delay
    int value = 0;   ///< Answer
};

/// A whole scene.
struct PSimScene {
    std::uint64_t seed = 1;
    std::vector<PSimCameraSpec> cameras;
    std::vector<PSimFaultSpec> faults;
};
