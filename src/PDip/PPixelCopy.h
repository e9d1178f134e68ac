// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <cstddef>

/// Copies pixels between memories that do not overlap. Any thread.
class PCD_TEST_EXPORT PPixelCopy {
public:
    /// Copies `size` bytes in the way that is fastest for that size, counting in the time to read
    /// them next.
    static void copy(unsigned char* target, const unsigned char* source, std::size_t size);

    /// The two ways: through the caches, where the pixels remain for the next reader, and past
    /// them. The second needs a target aligned to 16 bytes.
    static void copyThroughCaches(unsigned char* target, const unsigned char* source,
                                  std::size_t size);
    static void copyPastCaches(unsigned char* target, const unsigned char* source,
                               std::size_t size);

    /// From this size on, copies go past the caches, because pixels would not stay in them until
    /// they are read. (The C library does so too, but only from three quarters of the last cache,
    /// which a virtual machine believes to have to itself.)
    static constexpr std::size_t pastCachesFrom = std::size_t(16) << 20;
};
