// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PStatusLine.h>
#include <apps/pcdctl/runs/PRecordReport.h>

#include <apps/common/camera/PExposureWatch.h>
#include <apps/common/record/PFrameRecorder.h>

/// One recording from its start to its report. The main thread.
class PRecordRun {
public:
    PRecordRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
               const PCtlOptions& options);

    /// Records until the set end, the user's, or trouble; then stops the stream, and sees that what
    /// was taken is written and the files are complete.
    PCtlOutcome run();

    /// True once the stream was started: then there is a report.
    bool wasStarted() const { return m_wasStarted; }
    PRecordReport report(const PCtlOutcome& outcome) const;

private:
    using Clock = PFrameRecorder::Clock;

    PCtlOutcome start();
    std::unique_ptr<PFrameWriter> makeWriter() const;
    bool isOver();
    bool isStalled() const;
    void showStatus(const PFrameRecorder::Progress& progress);
    QString failureReason() const;
    void finish(const QString& trouble);
    QString troubleInAccounts() const;

    const PCameraIdentity m_camera;
    const PCtlOptions m_options;
    PStreamTally m_tally;
    PStatusLine m_status;
    std::shared_ptr<PFrameRecorder> m_recorder;
    std::unique_ptr<PExposureWatch> m_exposure;
    PFrameLedger m_ledgerAtStart;
    Clock::time_point m_lastFrame;
    bool m_wasStarted = false;
    PCameraSession m_session; // goes first: frames that still arrive need the rest
};
