// SPDX-License-Identifier: MIT
#pragma once

/// Base class of a record that a higher library attaches to an image (PImage::setAttachment), such
/// as when and how a camera frame was taken. Immutable once attached: copies of the image share it
/// between threads.
class PImageAttachment {
public:
    virtual ~PImageAttachment() = default;
};
