// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <PCore/PExport.h>

#include <mutex>

/// Keeps the ledger of a running device: a frame is counted when it appears and again when its
/// outcome is known. Any thread.
class PCD_TEST_EXPORT PFrameCounters {
public:
    /// A frame appeared and waits for its outcome.
    void enter();
    /// The outcome of a waiting frame is known.
    void settle(PFrameOutcome outcome);
    /// Frames appeared whose outcome is known at once: lost or dropped before they entered the
    /// pipeline.
    void enterAndSettle(PFrameOutcome outcome, quint64 count = 1);
    /// A frame was emitted as a snapshot.
    void countSnapshot();
    /// A consistent copy.
    PFrameLedger ledger() const;

private:
    mutable std::mutex m_mutex; // frame threads and the device's thread both count
    PFrameLedger m_ledger;
};
