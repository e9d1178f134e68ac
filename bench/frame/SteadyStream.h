// SPDX-License-Identifier: MIT
#pragma once

#include <frame/CountingSink.h>
#include <stub/StubFrame.h>
#include <stub/StubHost.h>

#include <memory>

class PDevice;

/// A camera that streams the same frame again and again to one frame sink. Made, and deleted, on
/// the main thread.
class SteadyStream {
public:
    explicit SteadyStream(StubFrame frame);

    /// The camera's callback with one frame: what the SDK's thread does. Any thread.
    void push() const { m_frame.push(); }
    /// True if all frames were delivered to the main thread, which is so before the next one comes
    /// with a host that keeps up. Any thread.
    bool isDelivered() const;

    const StubFrame& frame() const { return m_frame; }
    PDevice& device() const { return m_host.device(); }
    /// The frames that the sink received. Any thread.
    int count() const { return m_sink->count(); }

private:
    StubFrame m_frame;
    StubHost m_host;
    std::shared_ptr<CountingSink> m_sink = std::make_shared<CountingSink>();
};
