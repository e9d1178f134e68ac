// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/hook/PSimHook.h>
#include <toupcam/sim/stream/PSimDelivery.h>

/// Push mode: the client's data callback runs on the producing thread.
class PSimPushDelivery : public PSimDelivery {
public:
    PSimPushDelivery(PTOUPCAM_DATA_CALLBACK callback, void* context)
        : m_callback(callback)
        , m_context(context) {}

    void start(const void* /*owner*/, std::function<void()> /*wake*/) override {}
    void frame(PSimPicture& picture) override { push(picture, 0); }
    void still(PSimPicture& picture) override { push(picture, 1); }
    bool isReady() const override { return true; }
    void lost(std::function<void()> afterwards) override {
        PSimHook::beforeCallback("loss");
        m_callback(nullptr, nullptr, 0, m_context);
        afterwards();
    }
    void exposureChanged() override {}
    bool raw(const void* data, const BITMAPINFOHEADER* header, int isSnapshot) override {
        PSimHook::beforeCallback(data ? "data" : "loss");
        m_callback(data, header, isSnapshot, m_context);
        return true;
    }
    bool event(unsigned /*code*/, std::function<void()> /*afterwards*/) override { return false; }
    HRESULT pull(bool /*still*/, void* /*buffer*/, int /*bits*/,
                 ToupcamFrameInfoV2* /*info*/) override {
        return E_UNEXPECTED;
    }
    void requestStop() override {}
    void join() override {}

private:
    void push(const PSimPicture& picture, int isSnapshot) {
        const BITMAPINFOHEADER header = picture.header();
        PSimHook::beforeCallback("data");
        m_callback(picture.pixels, &header, isSnapshot, m_context);
    }

    PTOUPCAM_DATA_CALLBACK m_callback;
    void* m_context;
};
