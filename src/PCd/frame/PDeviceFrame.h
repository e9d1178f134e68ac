// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameStamp.h>

#include <PDip/PImage.h>

#include <QMetaType>

/// An image with its capture metadata. A value type; any thread.
struct PDeviceFrame {
    PImage image;
    /// Null for an image that has not passed through a device.
    std::shared_ptr<const PFrameStamp> stamp;
};

Q_DECLARE_METATYPE(PDeviceFrame)
