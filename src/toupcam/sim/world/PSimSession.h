// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/settings/PSimSettings.h>
#include <toupcam/sim/stream/PSimStream.h>

#include <atomic>
#include <memory>

/// One opened camera: its settings and its stream. Unplugging does not end a session: it can still
/// be stopped and closed. Callable from any thread.
class PSimSession {
public:
    PSimSession(std::shared_ptr<const PSimCameraSpec> spec, std::shared_ptr<PSimCameraLink> link);

    const PSimCameraSpec& spec() const { return *m_spec; }
    PSimSettings& settings() { return *m_settings; }
    PSimStream& stream() { return *m_stream; }

    /// Whether the camera was unplugged since it was opened.
    bool isGone() const { return m_gone; }
    /// The camera was unplugged; see PSimStream::reportLoss.
    bool unplugged(std::function<void()> afterwards);

    /// Starts the stream in push or pull mode; E_POINTER without a callback. See PSimStream::start.
    HRESULT startPush(PTOUPCAM_DATA_CALLBACK callback, void* context);
    HRESULT startPull(PTOUPCAM_EVENT_CALLBACK callback, void* context);
    /// Requests a still; E_INVALIDARG if there is no such resolution. See PSimStream::snap.
    HRESULT snap(unsigned resolution);
    /// One-push white balance; E_NOTIMPL on a grey camera. See PSimStream::balanceOnce.
    HRESULT balanceOnce(PITOUPCAM_TEMPTINT_CALLBACK callback, void* context);
    /// E_NOTIMPL if the camera has no software trigger. See PSimStream::trigger.
    HRESULT trigger(unsigned short count);
    /// Applies a change to the settings, then notifies the stream.
    template <typename Change>
    HRESULT change(const Change& apply) {
        const HRESULT result = apply(*m_settings);
        m_stream->settingsChanged();
        return result;
    }

private:
    std::shared_ptr<const PSimCameraSpec> m_spec;
    std::shared_ptr<PSimSettings> m_settings;
    std::shared_ptr<PSimStream> m_stream;
    std::atomic<bool> m_gone{false};
};
