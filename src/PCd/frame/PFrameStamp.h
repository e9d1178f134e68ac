// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <PDip/PImage.h>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QVariant>

#include <chrono>
#include <memory>
#include <utility>

/// The settings a device had at one moment, as the host knows them. Immutable once shared.
struct PDeviceSettings {
    PDeviceMode mode;
    /// Property id and value, in the order of the device's list; a choice by its item's name, which
    /// says what it was where the range is no longer known.
    QList<std::pair<QByteArray, QVariant>> values;
    /// What the values mean, by property id, as the properties declare it: PDeviceRoles reads it.
    QHash<QByteArray, QVariant> roles;
};

/// When and how a frame was taken. Tied to the frame's image, it travels with every copy of it.
struct PFrameStamp : public PImageAttachment {
    /// Number of the frame among those of its device that arrived, from 1; live frames and still
    /// pictures are counted apart. A frame that never arrived has no number, and leaves no gap.
    quint64 sequence = 0;
    bool still = false;                            ///< a still picture, not one of the live stream
    std::chrono::steady_clock::time_point arrived; ///< for intervals
    QDateTime arrivedUtc;                          ///< for texts and files
    std::shared_ptr<const PDeviceSettings> settings; ///< never null

    /// The stamp of an image, or null if it has not passed through a device. Any thread.
    static std::shared_ptr<const PFrameStamp> of(const PImage& image) {
        return std::dynamic_pointer_cast<const PFrameStamp>(image.attachment());
    }
};
