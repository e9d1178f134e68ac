// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

/// What the user has chosen for one element: its properties. A value type; any thread.
struct PGstOptions {
    /// What starts an exposure. The numbers are those of the element's enumeration.
    enum class Trigger { None = 0, Software = 1, External = 2 };
    /// What happens when the camera is unplugged; likewise.
    enum class OnUnplug { Error = 0, Eos = 1, Wait = 2 };

    QString camera;   ///< index, id or prefix of an id; empty: the first
    QString sdk;      ///< "sim", "auto" or a path; empty: see PGstHost::prepare()
    QString scene;    ///< file of the simulated cameras
    QString mode;     ///< id or name; empty: the camera's, or one that the pipeline takes
    QString settings; ///< see PGstSettings
    Trigger trigger = Trigger::None;
    int triggerFrames = 0; ///< fired at the start of the stream
    /// Exposure time of triggered frames; zero: that of the camera.
    std::chrono::microseconds triggerExposure{0};
    OnUnplug onUnplug = OnUnplug::Error;
};
