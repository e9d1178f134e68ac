// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/frame/PFrameLedger.h>

#include <QCoreApplication>
#include <QList>
#include <QString>

#include <utility>

/// The ledger of a camera in plain words. A value type; any thread.
class PLedgerText {
    Q_DECLARE_TR_FUNCTIONS(PLedgerText)

public:
    /// "Frames: 1203, lost: 3".
    static QString brief(const PFrameLedger& ledger);
    /// "Frames: 1203, none lost", or "Frames: 1203, lost: 3 (in the camera or on the cable: 2, …)".
    static QString summary(const PFrameLedger& ledger);
    /// Each outcome in words with its number of frames; outcomes without frames are left out,
    /// except the first. The last row is the number of pictures taken: the ledger's snapshots
    /// include live frames that a panel forwards.
    static QList<std::pair<QString, quint64>> rows(const PFrameLedger& ledger, quint64 pictures);
    /// The number of frames that should have arrived and did not.
    static quint64 lost(const PFrameLedger& ledger);

private:
    static QString where(PFrameOutcome outcome);
};
