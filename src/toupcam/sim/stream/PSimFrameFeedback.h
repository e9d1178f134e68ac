// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/stream/PSimOnePush.h>
#include <toupcam/sim/stream/PSimStreamSchedule.h>

#include <memory>
#include <mutex>

/// Automatic adjustments after a frame: auto-exposure and one-push white balance.
/// Callable from any thread; the client's callbacks run inside apply(), with no lock held.
class PSimFrameFeedback {
public:
    /// `schedule` is notified of changed settings.
    PSimFrameFeedback(std::shared_ptr<PSimImageSource> source,
                      std::shared_ptr<PSimSettings> settings, PSimStreamSchedule& schedule);

    /// Sets the function that is called when auto-exposure has changed something; null for none.
    void setExposureCallback(PITOUPCAM_EXPOSURE_CALLBACK callback, void* context);
    /// Requests one-push white balance, replacing a pending request.
    void requestBalance(const PSimOnePush::Request& request);
    /// Drops a pending request.
    void dropBalance();

    /// Adjusts the settings to a frame with these means that `delivery` has just delivered.
    void apply(const PSimMeans& means, PSimDelivery& delivery);

private:
    struct ExposureCallback {
        PITOUPCAM_EXPOSURE_CALLBACK function = nullptr;
        void* context = nullptr;
    };

    void adaptExposure(double mean, PSimDelivery& delivery);
    void balanceWhite(const PSimMeans& means);
    ExposureCallback exposureCallback() const;
    std::optional<PSimOnePush::Request> dueRequest();

    const std::shared_ptr<PSimImageSource> m_source;
    const std::shared_ptr<PSimSettings> m_settings;
    PSimStreamSchedule& m_schedule;
    mutable std::mutex m_mutex; // guards the two below; taken to copy them, never during a callback
    ExposureCallback m_exposureCallback;
    PSimOnePush m_onePush;
};
