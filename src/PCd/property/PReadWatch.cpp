// SPDX-License-Identifier: MIT
#include <PCd/property/PReadWatch.h>

namespace {

/// All failures reported on a thread.
thread_local quint64 failures = 0;

} // namespace

PReadWatch::PReadWatch() noexcept
    : m_before(failures) {
}

bool PReadWatch::hasFailed() const noexcept {
    return failures != m_before;
}

void PReadWatch::reportFailure() noexcept {
    ++failures;
}
