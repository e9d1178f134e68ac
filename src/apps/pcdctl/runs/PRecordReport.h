// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PStreamReport.h>

#include <apps/common/record/PRecordTally.h>

/// What there is to say about a recording that has ended.
struct PRecordReport {
    PStreamReport stream;
    QString file; ///< the stack, or the pattern of the files
    PRecordTally tally;

    QJsonObject toJson() const;
    /// Several lines for people.
    QString toText() const;
};
