// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

#include <optional>

struct PCameraIdentity;
struct PFrameStamp;

/// What picture formats have tags of their own for (TIFF 6.0, EXIF 2.32, PNG's pHYs). What is empty
/// or has no value is not known, and gets no tag. A value.
struct PPictureTags {
    QByteArray software; ///< program and version
    QByteArray make;     ///< "Simulated camera"; no maker's name is known of a real one
    QByteArray model;
    QByteArray serial;
    QDateTime taken;
    std::optional<double> exposureSeconds;
    bool isAutomatic = false;          ///< the exposure, if it is known
    std::optional<double> pixelSizeUm; ///< on the specimen, of a pixel as saved

    /// Of a frame; without a stamp, of the program and the camera alone. Any thread.
    static PPictureTags of(const PCameraIdentity& camera, const PFrameStamp* stamp,
                           std::optional<double> pixelSizeUm = std::nullopt);

    /// True if there is nothing to write: no tag has a value. Any thread.
    bool isEmpty() const;
    /// When it was taken, in the form of TIFF and EXIF: "2026:03:01 12:00:00", in local time.
    QByteArray takenText() const;
};
