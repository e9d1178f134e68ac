// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <array>

/// An opened camera of the stub SDK: its settings, each with the camera's default. Like the SDK's
/// own, they may be used on any thread, but here by one at a time.
struct StubSession : Toupcam_t {
    unsigned resolution = 0;
    std::array<unsigned, 4> region{};
    std::array<int, 0x40> options{};

    unsigned short speed = 0;
    int autoExpoEnable = 0;
    unsigned short autoExpoTarget = 120;
    unsigned expoTime = 10000; // microseconds
    unsigned short expoAGain = 100;
    int temp = 6503;
    int tint = 1000;
    int hue = 0;
    int saturation = 128;
    int brightness = 0;
    int contrast = 0;
    int gamma = 100;
    int chrome = 0;
    int vFlip = 0;
    int hFlip = 0;
    int negative = 0;
    int hz = 0;
    short temperature = 200; // tenths of a degree

    /// The session behind a handle of the SDK.
    static StubSession& of(HToupcam handle) { return *static_cast<StubSession*>(handle); }
};
