// SPDX-License-Identifier: MIT
#pragma once

/// Base of a record that a library above ties to an image (PImage::setAttachment), such as when and
/// how a camera frame was taken. Immutable once tied: copies of the image share it between threads.
class PImageAttachment {
public:
    virtual ~PImageAttachment() = default;
};
