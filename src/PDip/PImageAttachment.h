// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

/// Base class of a record that a higher library attaches to an image (PImage::setAttachment), such
/// as when and how a camera frame was taken. Immutable once attached: copies of the image share it
/// between threads.
class PCD_EXPORT PImageAttachment {
public:
    virtual ~PImageAttachment(); // defined in the library, so that all others share its type
};
