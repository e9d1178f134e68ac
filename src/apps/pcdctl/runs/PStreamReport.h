// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PStreamTally.h>

#include <apps/common/camera/PCameraIdentity.h>

#include <PCd/frame/PDeviceMode.h>
#include <PCd/frame/PFrameLedger.h>

#include <QJsonObject>

#include <optional>

/// The report on a stream that has ended. A value type; one thread.
struct PStreamReport {
    PCameraIdentity camera;
    PDeviceMode mode;
    const PStreamTally& tally;
    PFrameLedger ledger;
    std::optional<quint64> saved; ///< frames saved, if any should be
    QString error;                ///< empty: none

    /// The object that `--json` prints.
    QJsonObject toJson() const;
    /// Several lines of text.
    QString toText() const;
};
