// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/runs/PLiveRun.h>
#include <apps/pcdctl/runs/PPipeReport.h>

/// One stream whose frames are passed on to another program, through standard output, a named pipe
/// or a file. It ends also when the reader closes the pipe, which is no failure. The main thread.
class PPipeRun : public PLiveRun {
public:
    using PLiveRun::PLiveRun;

    /// The report on it; `outcome` is that of run().
    PPipeReport report(const PCtlOutcome& outcome) const;

protected:
    PCtlOutcome prepare() override;
    std::optional<std::chrono::milliseconds> timeLimit() const override {
        return options().duration;
    }
    bool isComplete() const override;
    quint64 framesTaken() const override;
    std::optional<double> share() const override;
    QString statusText() const override;

    // The number of frames is that of the frames passed on, which the outlet counts.
    std::optional<quint64> frameLimit() const override { return std::nullopt; }
    bool isOutputOver() const override;
    void finishOutput(const QString& reason) override;
    QString outputError() const override;
    bool isOutputBalanced() const override;

private:
    PCtlOutcome open(PStreamTarget& target);

    std::shared_ptr<PFrameOutlet> m_outlet;
    QString m_target;     ///< as the user reads it
    QString m_closeError; ///< empty: none
};
