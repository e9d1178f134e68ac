// SPDX-License-Identifier: MIT
#include <apps/common/record/PWriteMemory.h>

#include <unistd.h>

#include <algorithm>

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t(1) << 20;

/// Bytes; 0 if the system does not report it.
std::uint64_t physicalMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? std::uint64_t(pages) * std::uint64_t(pageSize) : 0;
}

} // namespace

std::size_t PWriteMemory::defaultLimit() {
    static const std::size_t limit = limitFor(physicalMemory());
    return limit;
}

// The rest is for the camera's buffers, other programs, and the system's disk cache. On a disk that
// is too slow, more than 2 GiB would only delay the end; with room for less than a few large
// frames, a short pause of the disk would end a recording.
std::size_t PWriteMemory::limitFor(std::uint64_t memory) {
    return std::size_t(std::clamp(memory / 4, 64 * mebibyte, 2048 * mebibyte));
}

std::shared_ptr<PWorkBudget> PWriteMemory::makeBudget() {
    return std::make_shared<PWorkBudget>(defaultLimit());
}
