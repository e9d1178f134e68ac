// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PStreamTally.h>

#include <apps/common/camera/PCameraIdentity.h>

#include <PCd/frame/PDeviceMode.h>
#include <PCd/frame/PFrameLedger.h>

#include <QJsonObject>

#include <optional>

/// What there is to say about a stream that has ended.
struct PStreamReport {
    PCameraIdentity camera;
    PDeviceMode mode;
    const PStreamTally& tally;
    PFrameLedger ledger;
    std::optional<quint64> saved; ///< frames saved, if any should be
    QString error;                ///< empty: none

    QJsonObject toJson() const;
    /// Several lines for people.
    QString toText() const;
};
