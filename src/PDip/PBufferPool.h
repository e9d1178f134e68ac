// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>

/// Recycles pixel memory: a buffer that the last image releases is kept for the next image of its
/// size, so that in a steady stream a frame costs neither an allocation nor a page fault. Idle
/// memory is limited in bytes and returned to the system when it has not been used for some
/// seconds. All functions: any thread.
class PCD_EXPORT PBufferPool {
public:
    /// Counts since the pool was created; the bytes are current.
    struct Statistics {
        std::uint64_t allocations = 0; ///< buffers allocated from the system
        std::uint64_t reuses = 0;      ///< buffers handed out again
        std::size_t idleBytes = 0;     ///< idle, in whole buffers (see acquire())
        std::size_t usedBytes = 0;     ///< handed out, in whole buffers
    };
    using Buffer = std::shared_ptr<unsigned char>;

    /// A separate pool that keeps at most `idleLimit` bytes, and at most 64 buffers, idle. What has
    /// been idle for `idleTime` is returned to the system when a buffer is next acquired or
    /// released.
    explicit PBufferPool(std::size_t idleLimit,
                         std::chrono::milliseconds idleTime = std::chrono::seconds(5));
    ~PBufferPool(); ///< Buffers in use stay valid; they go back to the system instead.

    /// The pool that images use. It exists as long as any of its buffers is in use, even during
    /// exit().
    static PBufferPool& instance();

    /// Memory for `size` bytes, aligned to 64 bytes, with undefined content; null if size is 0 or
    /// memory is exhausted. The size is rounded up to whole pages and by up to a sixteenth: sizes
    /// that are rounded to the same value share buffers.
    Buffer acquire(std::size_t size);

    /// Limits the bytes that images may use at a time: beyond the limit acquire() returns null. For
    /// hosts that must not use all of a machine's memory; no limit by default.
    void setUseLimit(std::size_t bytes);
    static constexpr std::size_t noLimit = ~std::size_t(0);

    /// Returns all idle memory to the system.
    void trim();

    /// The counts, all of the same moment, for hosts that watch their memory.
    Statistics statistics() const;

private:
    struct Core;
    std::shared_ptr<Core> m_core; // shared with every buffer handed out: images outlive the pool
};
