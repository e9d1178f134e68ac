// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <gst/gst.h>

/// Frames as buffers of GStreamer, without copying their pixels. Any thread.
class PGstBuffer {
public:
    /// A buffer of the image's own memory, which it keeps alive and which nobody may write to. The
    /// caller owns it. Null for an empty image.
    static GstBuffer* wrap(const PImage& image);
};
