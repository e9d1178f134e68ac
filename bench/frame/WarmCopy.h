// SPDX-License-Identifier: MIT
#pragma once

#include <stub/StubFrame.h>

#include <vector>

/// The cheapest way to keep a frame that is not ours to keep: one memcpy() into memory that has
/// been written to before and is always the same. Any thread.
class WarmCopy {
public:
    explicit WarmCopy(const StubFrame& frame)
        : m_target(frame.size(), 1) {}

    /// Copies the frame, which has the size of the first one.
    void take(const StubFrame& frame);

private:
    std::vector<unsigned char> m_target;
};
