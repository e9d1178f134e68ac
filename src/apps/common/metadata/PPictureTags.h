// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>

#include <optional>

struct PCameraIdentity;
struct PFrameStamp;

/// The metadata for which picture formats have tags (TIFF 6.0, EXIF 2.32, PNG's pHYs). What is
/// empty or has no value is unknown, and gets no tag. A value type.
struct PPictureTags {
    QByteArray software; ///< program and version
    QByteArray make;     ///< "Simulated camera"; real cameras do not report their maker
    QByteArray model;
    QByteArray serial;
    QDateTime taken;
    std::optional<double> exposureSeconds;
    bool isAutomatic = false;          ///< the exposure, if it is known
    std::optional<double> pixelSizeUm; ///< on the specimen, of a pixel as saved

    /// The tags of a frame; without a stamp, only those of the program and the camera. Any thread.
    static PPictureTags of(const PCameraIdentity& camera, const PFrameStamp* stamp,
                           std::optional<double> pixelSizeUm = std::nullopt);

    /// True if there is nothing to write: no tag has a value. Any thread.
    bool isEmpty() const;
    /// When it was taken, in the form of TIFF and EXIF: "2026:03:01 12:00:00", in local time.
    QByteArray takenText() const;
};
