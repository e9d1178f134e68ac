// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <PDip/PImage.h>

#include <PCore/PExport.h>

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QVariant>

#include <chrono>
#include <memory>
#include <utility>

/// The settings of a device at one moment, from the cached values. Immutable once shared.
struct PDeviceSettings {
    PDeviceMode mode;
    /// Property id and value, in the order of the device's list; a choice by its item's name, which
    /// is readable without the range.
    QList<std::pair<QByteArray, QVariant>> values;
    /// The roles that the properties declare, by property id; PDeviceRoles reads them.
    QHash<QByteArray, QVariant> roles;
};

/// When and how a frame was taken. Attached to the frame's image and all copies of it.
struct PCD_EXPORT PFrameStamp : public PImageAttachment {
    /// Number of the frame among those that arrived from its device, from 1; live frames and stills
    /// are numbered separately. A frame that never arrived has no number and leaves no gap.
    quint64 sequence = 0;
    bool still = false;                              ///< a still, not a live frame
    std::chrono::steady_clock::time_point arrived;   ///< for intervals
    QDateTime arrivedUtc;                            ///< for texts and files
    std::shared_ptr<const PDeviceSettings> settings; ///< never null

    /// The stamp of an image, or null if it has not passed through a device. Any thread.
    static std::shared_ptr<const PFrameStamp> of(const PImage& image) {
        return std::dynamic_pointer_cast<const PFrameStamp>(image.attachment());
    }
};
