// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The stub SDK's side of a connection to another process that says when the camera sends a frame:
/// so programs are measured as users run them. Any thread.
class StubRemote {
public:
    /// The variable of the environment with the descriptor of the connection, a socket that keeps
    /// messages apart. Without it there is no remote, and nothing happens.
    static constexpr const char* variable = "PCD_STUB_REMOTE";

    /// What comes in: the next frame to send, in pixels and bits of a pixel.
    struct Request {
        std::int32_t width = 0;
        std::int32_t height = 0;
        std::int32_t bits = 0;
    };

    /// What goes out: `ready` when the camera streams; then for each frame, after its callback, the
    /// nanoseconds of the system's monotonic clock just before it, or `failed`.
    using Reply = std::int64_t;
    static constexpr Reply ready = 0;
    static constexpr Reply failed = -1;

    /// A camera streams: the first time, starts the thread on which requests are carried out. When
    /// the connection is closed, this process ends as with SIGTERM.
    static void begin();
};
