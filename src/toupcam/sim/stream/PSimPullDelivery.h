// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/stream/PSimDelivery.h>
#include <toupcam/sim/stream/PSimEventThread.h>

#include <mutex>

/// Pull mode: the newest picture is kept until it is pulled; the client's event callback runs on an
/// event thread.
class PSimPullDelivery : public PSimDelivery {
public:
    PSimPullDelivery(PTOUPCAM_EVENT_CALLBACK callback, void* context);

    void start(const void* owner, std::function<void()> wake) override;
    void frame(PSimPicture& picture) override;
    void still(PSimPicture& picture) override;
    bool isReady() const override;
    void lost(std::function<void()> afterwards) override;
    void exposureChanged() override;
    bool raw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) override;
    bool event(unsigned code, std::function<void()> afterwards) override;
    HRESULT pull(bool still, void* buffer, int bits, ToupcamFrameInfoV2* info) override;
    void requestStop() override;
    void join() override;

private:
    /// The newest picture, waiting to be pulled. One whose size a client has queried stays until it
    /// is pulled or queried again, because the client allocates its buffer for it.
    struct Slot {
        std::mutex mutex; // guards the pictures while they are exchanged or copied
        PSimPicture picture;
        PSimPicture newer;
        bool full = false;
        bool promised = false; // its size has been queried
        bool hasNewer = false;

        void put(PSimPicture& next);
        void advance();
        HRESULT take(void* buffer, int bits, ToupcamFrameInfoV2* info);
    };

    std::shared_ptr<PSimEventThread> m_events;
    std::function<void()> m_wake;
    Slot m_live;
    Slot m_still;
};
