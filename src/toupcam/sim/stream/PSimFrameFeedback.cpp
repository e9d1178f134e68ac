// SPDX-License-Identifier: MIT
#include <toupcam/sim/stream/PSimFrameFeedback.h>

#include <toupcam/sim/hook/PSimHook.h>

#include <utility>

PSimFrameFeedback::PSimFrameFeedback(std::shared_ptr<PSimImageSource> source,
                                     std::shared_ptr<PSimSettings> settings,
                                     PSimStreamSchedule& schedule)
    : m_source(std::move(source))
    , m_settings(std::move(settings))
    , m_schedule(schedule) {
}

void PSimFrameFeedback::setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context) {
    const std::lock_guard lock(m_mutex);
    m_exposureCallback = {callback, context};
}

void PSimFrameFeedback::requestBalance(const PSimOnePush::Request& request) {
    const std::lock_guard lock(m_mutex);
    m_onePush.place(request);
}

void PSimFrameFeedback::dropBalance() {
    const std::lock_guard lock(m_mutex);
    m_onePush.drop();
}

void PSimFrameFeedback::apply(const PSimMeans& means, PSimDelivery& delivery) {
    if (m_source->isExposed())
        adaptExposure(means.all(), delivery);
    balanceWhite(means);
}

void PSimFrameFeedback::adaptExposure(double mean, PSimDelivery& delivery) {
    if (!m_settings->adapt(mean))
        return;
    m_schedule.settingsChanged();
    const ExposureCallback callback = exposureCallback();
    delivery.exposureChanged();
    if (!callback.function)
        return;
    PSimHook::beforeCallback("exposure");
    callback.function(callback.context);
}

void PSimFrameFeedback::balanceWhite(const PSimMeans& means) {
    const std::optional<PSimOnePush::Request> request = dueRequest();
    if (!request)
        return;
    m_settings->balance(means);
    int temperature = 0;
    int tint = 0;
    m_settings->tempTint(&temperature, &tint);
    if (!request->callback)
        return;
    PSimHook::beforeCallback("temptint");
    request->callback(temperature, tint, request->context);
}

PSimFrameFeedback::ExposureCallback PSimFrameFeedback::exposureCallback() const {
    const std::lock_guard lock(m_mutex);
    return m_exposureCallback;
}

std::optional<PSimOnePush::Request> PSimFrameFeedback::dueRequest() {
    const std::lock_guard lock(m_mutex);
    return m_onePush.delivered();
}
