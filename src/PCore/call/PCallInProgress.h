// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallSlot.h>

/// Marks its thread as being in a call while it exists; see PNamedCall.
class PCallInProgress {
public:
    explicit PCallInProgress(PCallSlot& slot)
        : m_slot(slot) {}
    ~PCallInProgress() { m_slot.leave(); }
    PCallInProgress(const PCallInProgress&) = delete;
    PCallInProgress& operator=(const PCallInProgress&) = delete;

private:
    PCallSlot& m_slot;
};
