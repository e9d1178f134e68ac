// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PStatusLine.h>
#include <apps/pcdctl/runs/PStreamReport.h>
#include <apps/pcdctl/runs/PStreamTally.h>

#include <apps/common/record/PFrameSaver.h>

/// One live stream, free-running or triggered, from its start to its report. The main thread.
class PStreamRun {
public:
    PStreamRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
               const PCtlOptions& options);

    /// Runs the stream until its set end, the user's, or trouble; then stops it, and sees that what
    /// was to be saved is.
    PCtlOutcome run();

    /// True once the stream was started: then there is a report.
    bool wasStarted() const { return m_wasStarted; }
    PStreamReport report(const PCtlOutcome& outcome) const;

private:
    using Clock = PStreamTally::Clock;

    PCtlOutcome start();
    PCtlOutcome startSaver();
    PCtlOutcome prepareTrigger();
    PCtlOutcome startStream();
    PCtlOutcome fireTrigger(int frames);
    std::chrono::microseconds longestWait() const;
    QString missingFrame() const;
    bool isOver();
    bool isStalled() const;
    double share() const;
    void showStatus();
    QString failureReason(bool reachedEnd) const;
    QString troubleInAccounts() const;
    void finishSaving();

    const PCameraIdentity m_camera;
    const PCtlOptions m_options;
    PStreamTally m_tally;
    PStatusLine m_status;
    std::shared_ptr<PFrameSaver> m_saver;
    std::unique_ptr<PTriggerControl> m_trigger; ///< null: free-running
    Clock::time_point m_start;
    Clock::time_point m_lastFrame;
    bool m_wasStarted = false;
    PCameraSession m_session; // goes first: frames that still arrive need the rest
};
