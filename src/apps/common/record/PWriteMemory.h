// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/work/PWorkBudget.h>

#include <cstdint>
#include <memory>

/// The limit on bytes of pixels that wait for the disk. Any thread.
namespace PWriteMemory {

/// The limit for this machine: limitFor() its memory.
std::size_t defaultLimit();
/// A quarter of this number of bytes of memory, at least 64 MiB and at most 2 GiB.
std::size_t limitFor(std::uint64_t memory);
/// A new budget with the limit for this machine; recorders may share one.
std::shared_ptr<PWorkBudget> makeBudget();

} // namespace PWriteMemory
