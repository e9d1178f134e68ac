// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <mutex>

/// The ledger of a running device: frames are entered when they appear and settled when their
/// outcome is known, from whatever thread finds out.
class PFrameCounters {
public:
    /// A frame appeared and is on its way.
    void enter();
    /// A frame on its way met its outcome.
    void settle(PFrameOutcome outcome);
    /// Frames appeared only to meet this outcome (lost or dropped before they were on their way).
    void enterAndSettle(PFrameOutcome outcome, quint64 count = 1);
    /// A picture was handed out as a snapshot.
    void countSnapshot();
    /// A consistent copy.
    PFrameLedger ledger() const;

private:
    mutable std::mutex m_mutex; // frame threads and the device's thread both book
    PFrameLedger m_ledger;
};
