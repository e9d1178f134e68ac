// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

class PDevice;

/// The present exposure of a camera as text. The device's thread; the camera is not read.
class PExposureText {
    Q_DECLARE_TR_FUNCTIONS(PExposureText)

public:
    /// "12.5 ms, gain 1.2, auto". Unknown parts are left out.
    static QString of(const PDevice& device);

    /// "150 µs", "12.5 ms", "3 s", in the user's language.
    static QString time(double microseconds);
};
