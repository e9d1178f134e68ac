// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <mutex>

/// Keeps the ledger of a running device: frames are entered when they appear and settled when their
/// outcome is known, from whatever thread finds out.
class PFrameCounters {
public:
    /// A frame appeared and is on its way.
    void enter();
    /// The outcome of a frame on its way is known.
    void settle(PFrameOutcome outcome);
    /// Frames appeared whose outcome is known at once: lost or dropped before they set out.
    void enterAndSettle(PFrameOutcome outcome, quint64 count = 1);
    /// A picture was handed out as a snapshot.
    void countSnapshot();
    /// A consistent copy.
    PFrameLedger ledger() const;

private:
    mutable std::mutex m_mutex; // frame threads and the device's thread both count
    PFrameLedger m_ledger;
};
