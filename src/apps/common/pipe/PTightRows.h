// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/pipe/PFrameCoding.h>

#include <vector>

/// The rows of an image without the padding between them. One thread.
class PTightRows {
public:
    /// The image's own bytes if its rows have no padding, else a copy, valid until the next call.
    /// Throws std::bad_alloc.
    PByteView pack(const PImage& image);

private:
    std::vector<unsigned char> m_copy;
};
