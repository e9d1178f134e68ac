// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameSink.h>

#include <atomic>

/// The least that a frame sink can do: it counts. Any thread.
class CountingSink : public PFrameSink {
public:
    bool takeFrame(const PDeviceFrame&, Kind) override {
        ++m_count;
        return true;
    }
    int count() const { return m_count; }

private:
    std::atomic<int> m_count{0};
};
