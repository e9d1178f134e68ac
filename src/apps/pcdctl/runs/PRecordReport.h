// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PStreamReport.h>

#include <apps/common/record/PRecordTally.h>

/// The report on a recording that has ended. A value type; one thread.
struct PRecordReport {
    PStreamReport stream;
    QString file; ///< the stack, the folder, or the pattern of the files
    PRecordTally tally;

    /// The object that `--json` prints.
    QJsonObject toJson() const;
    /// Several lines of text.
    QString toText() const;
};
