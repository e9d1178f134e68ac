// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PLiveRun.h>

/// One live stream, free-running or triggered, whose frames are counted and may be saved. The main
/// thread.
class PStreamRun : public PLiveRun {
public:
    using PLiveRun::PLiveRun;

    /// The report on it; `outcome` is that of run().
    PStreamReport report(const PCtlOutcome& outcome) const;

protected:
    PCtlOutcome prepare() override;
    PCtlOutcome afterStart() override;
    void beforeStop() override;
    std::optional<std::chrono::milliseconds> timeLimit() const override {
        return options().duration;
    }
    bool isComplete() const override;
    quint64 framesTaken() const override { return tally().frames(); }
    std::chrono::microseconds longestWait() const override;
    QString stallReason() const override;
    std::optional<double> share() const override;
    QString statusText() const override;

private:
    PCtlOutcome prepareTrigger();
    PCtlOutcome fireTrigger(int frames);

    std::unique_ptr<PTriggerControl> m_trigger; ///< null: free-running
};
