// SPDX-License-Identifier: MIT
#pragma once

#include <PDip/PImage.h>

#include <QByteArray>

#include <optional>

/// Bytes that belong to something else. A value type.
struct PByteView {
    const unsigned char* data = nullptr;
    std::size_t size = 0;
};

/// A form in which frames are passed to other programs. One thread at a time.
class PFrameCoding {
public:
    virtual ~PFrameCoding() = default;

    /// True if makeHeader() uses the frame rate.
    virtual bool needsRate() const = 0;
    /// What precedes all frames; `first` is the geometry of all of them, the rate in frames per
    /// second, or nothing if it is unknown.
    virtual QByteArray makeHeader(const PImageHeader& first, std::optional<double> rate) const = 0;
    /// What precedes each frame.
    virtual QByteArray frameMark() const = 0;
    /// The bytes of a frame, valid until the image is destroyed or this is called again. Throws
    /// std::bad_alloc.
    virtual PByteView encode(const PImage& image) = 0;
};
