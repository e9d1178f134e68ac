// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PLiveRun.h>
#include <apps/pcdctl/runs/PRecordReport.h>

/// One recording: a stream whose frames go into files until the recorder's plan is fulfilled. The
/// main thread.
class PRecordRun : public PLiveRun {
public:
    using PLiveRun::PLiveRun;

    /// The report on it; `outcome` is that of run().
    PRecordReport report(const PCtlOutcome& outcome) const;

protected:
    PCtlOutcome prepare() override;
    bool isComplete() const override { return recorder()->progress().isOver; }
    quint64 framesTaken() const override;
    bool mayEndNow() const override { return PLiveRun::mayEndNow() && framesTaken() > 0; }
    std::optional<double> share() const override { return recorder()->progress().share; }
    QString statusText() const override;
};
