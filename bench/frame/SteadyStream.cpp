// SPDX-License-Identifier: MIT
#include <frame/SteadyStream.h>

#include <PCd/device/PDevice.h>

#include <utility>

SteadyStream::SteadyStream(StubFrame frame)
    : m_frame(std::move(frame)) {
    m_host.device().addFrameSink(m_sink);
    m_host.startStream();
}

bool SteadyStream::isDelivered() const {
    return m_host.device().frameLedger().waiting == 0;
}
