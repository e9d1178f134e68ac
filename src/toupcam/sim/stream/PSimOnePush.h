// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <optional>
#include <utility>

/// One-push white balance that somebody has asked for: goes by the second frame delivered after
/// that, because the first may have been exposed before. Guarded by its owner's lock.
class PSimOnePush {
public:
    struct Request {
        PITOUPCAM_TEMPTINT_CALLBACK callback = nullptr;
        void* context = nullptr;
    };

    /// Takes the place of a request that still waits.
    void place(const Request& request) {
        m_request = request;
        m_frames = kFrames;
    }
    void drop() { m_request.reset(); }

    /// A frame has been delivered: the request that goes by it, which is done then, or none.
    std::optional<Request> delivered() {
        if (!m_request || --m_frames > 0)
            return std::nullopt;
        return std::exchange(m_request, std::nullopt);
    }

private:
    static constexpr unsigned kFrames = 2;

    std::optional<Request> m_request;
    unsigned m_frames = 0;
};
