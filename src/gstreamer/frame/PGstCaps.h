// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PDeviceMode.h>

#include <PDip/PImageHeader.h>

#include <QList>
#include <QString>

#include <gst/gst.h>

/// What GStreamer calls a camera's frames: raw video in the formats of the framework, without a
/// fixed rate. The caller owns what is returned. Any thread.
class PGstCaps {
public:
    /// Everything that a camera might send.
    static GstCaps* makeTemplate();
    /// What a camera with these modes might send: each size, and any format.
    static GstCaps* fromModes(const QList<PDeviceMode>& modes);
    /// What the frames with this header are; null if GStreamer has no such format, or lays it out
    /// differently.
    static GstCaps* fromHeader(const PImageHeader& header);
    /// The first mode whose size the caps allow, `preferred` if it is one of them; one without a
    /// size if there is none.
    static PDeviceMode choose(const GstCaps* caps, const QList<PDeviceMode>& modes,
                              const PDeviceMode& preferred);
    /// For messages.
    static QString toText(const GstCaps* caps);
};
