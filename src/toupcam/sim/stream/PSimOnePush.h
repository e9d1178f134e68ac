// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <optional>
#include <utility>

/// A request for one-push white balance: it uses the second frame delivered after the request,
/// because the first may have been exposed before. Any thread may use it under its owner's lock.
class PSimOnePush {
public:
    /// The callback for the result, which may be null, and its context.
    struct Request {
        PITOUPCAM_TEMPTINT_CALLBACK callback = nullptr;
        void* context = nullptr;
    };

    /// Replaces a pending request.
    void place(const Request& request) {
        m_request = request;
        m_frames = frames;
    }
    void drop() { m_request.reset(); }

    /// A frame has been delivered: returns the request that uses it, if any, and removes it.
    std::optional<Request> delivered() {
        if (!m_request || --m_frames > 0)
            return std::nullopt;
        return std::exchange(m_request, std::nullopt);
    }

private:
    static constexpr unsigned frames = 2;

    std::optional<Request> m_request;
    unsigned m_frames = 0;
};
