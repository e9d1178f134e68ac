// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PStreamReport.h>

#include <apps/common/pipe/PFrameOutlet.h>

/// The report on a stream whose frames were passed on to another program. A value type; one
/// thread.
struct PPipeReport {
    PStreamReport stream;
    QString target; ///< as the user reads it
    PFrameOutlet::Progress output;

    /// The object that `--json` prints.
    QJsonObject toJson() const;
    /// Several lines of text.
    QString toText() const;
};
