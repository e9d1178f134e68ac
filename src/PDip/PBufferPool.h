// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>

/// Pixel memory that is used again: a buffer that the last image lets go of waits here for the next
/// image of its size, so that a steady stream costs neither an allocation nor a page fault a frame.
/// What waits is bounded in bytes and given back to the system when it has not been used for some
/// seconds. All functions: any thread.
class PBufferPool {
public:
    /// Counted since the pool was made; the bytes are those of now.
    struct Statistics {
        std::uint64_t allocations = 0; ///< buffers taken from the system
        std::uint64_t reuses = 0;      ///< buffers handed out again
        std::size_t idleBytes = 0;     ///< waiting here, in whole buffers (see acquire())
        std::size_t usedBytes = 0;     ///< handed out, in whole buffers
    };
    using Buffer = std::shared_ptr<unsigned char>;

    /// A pool of its own that keeps at most `idleLimit` bytes, and at most 64 buffers, waiting.
    /// What has waited for `idleTime` goes back to the system when a buffer is next taken or let
    /// go.
    explicit PBufferPool(std::size_t idleLimit,
                         std::chrono::milliseconds idleTime = std::chrono::seconds(5));
    ~PBufferPool(); ///< Buffers in use stay valid; they go back to the system instead.

    /// The pool that images use. It lives as long as anything of it is in use, also past exit().
    static PBufferPool& instance();

    /// Memory for `size` bytes, aligned to 64 bytes, with undefined content; null if there is none
    /// to be had or size is 0. The buffer is up to a sixteenth, and at least to whole pages,
    /// larger: sizes that come to the same share buffers.
    Buffer acquire(std::size_t size);

    /// The highest number of bytes that may be in images at a time: beyond it acquire() gives null.
    /// A host that must not take all of a machine's memory sets it; at first there is no limit.
    void setUseLimit(std::size_t bytes);
    static constexpr std::size_t noLimit = ~std::size_t(0);

    /// Gives everything that waits back to the system.
    void trim();

    /// The counts, all of the same moment.
    Statistics statistics() const;

private:
    struct Core;
    std::shared_ptr<Core> m_core; // shared with every buffer handed out: images outlive the pool
};
