// SPDX-License-Identifier: MIT
#include <toupcam/sim/world/PSimSession.h>

#include <toupcam/sim/stream/PSimPullDelivery.h>
#include <toupcam/sim/stream/PSimPushDelivery.h>

#include <utility>

PSimSession::PSimSession(std::shared_ptr<const PSimCameraSpec> spec,
                         std::shared_ptr<PSimCameraLink> link)
    : m_spec(std::move(spec))
    , m_settings(std::make_shared<PSimSettings>(m_spec, link->thermal))
    , m_stream(std::make_shared<PSimStream>(std::move(link), m_settings)) {
}

bool PSimSession::unplugged(std::function<void()> afterwards) {
    m_gone = true;
    return m_stream->reportLoss(std::move(afterwards));
}

HRESULT PSimSession::startPush(PTOUPCAM_DATA_CALLBACK callback, void* context) {
    if (!callback)
        return E_POINTER;
    return m_stream->start(std::make_shared<PSimPushDelivery>(callback, context));
}

HRESULT PSimSession::startPull(PTOUPCAM_EVENT_CALLBACK callback, void* context) {
    if (!callback)
        return E_POINTER;
    return m_stream->start(std::make_shared<PSimPullDelivery>(callback, context));
}

HRESULT PSimSession::snap(unsigned resolution) {
    if (resolution >= m_spec->resolutions.size())
        return E_INVALIDARG;
    return m_stream->snap(resolution);
}

HRESULT PSimSession::balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context) {
    return m_spec->isColour() ? m_stream->balanceOnce(callback, context) : E_NOTIMPL;
}

HRESULT PSimSession::trigger(unsigned short count) {
    return m_spec->flags & TOUPCAM_FLAG_TRIGGER_SOFTWARE ? m_stream->trigger(count) : E_NOTIMPL;
}
