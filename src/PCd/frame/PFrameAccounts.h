// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <mutex>

/// The ledger of a running device: frames are entered when they appear and settled when their fate
/// is known, from whatever thread finds out.
class PFrameAccounts {
public:
    /// A frame appeared and is on its way.
    void enter();
    /// A frame on its way met its fate.
    void settle(PFrameFate fate);
    /// Frames appeared only to meet this fate (lost or dropped before they were on their way).
    void enterAndSettle(PFrameFate fate, quint64 count = 1);
    /// A picture was handed out as a snapshot.
    void countSnapshot();
    /// A consistent copy.
    PFrameLedger ledger() const;

private:
    mutable std::mutex m_mutex; // frame threads and the device's thread both book
    PFrameLedger m_ledger;
};
