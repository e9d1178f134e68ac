// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdctl/camera/PCameraSession.h>
#include <apps/pcdctl/cli/PCtlOptions.h>
#include <apps/pcdctl/cli/PStatusLine.h>
#include <apps/pcdctl/runs/PStreamReport.h>
#include <apps/pcdctl/runs/PStreamTally.h>

#include <apps/common/record/PFrameRecorder.h>

/// A live stream of one camera from its start to its end, with a recorder if frames are to be
/// saved: what the runs of all commands have in common. The main thread.
class PLiveRun {
public:
    PLiveRun(PDeviceManager& manager, PDevice* device, PCameraIdentity camera,
             const PCtlOptions& options);
    virtual ~PLiveRun() = default;

    /// Runs the stream until its planned end, an interruption by the user, or a failure; then stops
    /// it, and makes sure that what was taken is saved and the files are complete. Fails with the
    /// first reason.
    PCtlOutcome run();

    /// True once the stream was started: then there is a report.
    bool wasStarted() const { return m_wasStarted; }

protected:
    using Clock = PStreamTally::Clock;

    /// Called when the camera is open and the stream not started yet: creates what the run needs.
    virtual PCtlOutcome prepare() = 0;
    /// Called when the stream has just been started.
    virtual PCtlOutcome afterStart() { return {}; }
    /// Called when the stream is about to be stopped; the camera is present.
    virtual void beforeStop() {}
    /// The stream ends after this time; none if it has no time limit.
    virtual std::optional<std::chrono::milliseconds> timeLimit() const { return std::nullopt; }
    /// True if everything that was planned has been taken.
    virtual bool isComplete() const = 0;
    /// The number of frames taken, for messages.
    virtual quint64 framesTaken() const = 0;
    /// True if the user may end the run now without making it a failure.
    virtual bool mayEndNow() const;
    /// The longest time without a frame that is not a failure.
    virtual std::chrono::microseconds longestWait() const { return m_options.frameTimeout(); }
    /// Why a run without a frame for longestWait() fails.
    virtual QString stallReason() const;
    /// The share of the run that is done, from 0 to 1; nothing without a planned end.
    virtual std::optional<double> share() const = 0;
    /// The line that shows progress, without its bar.
    virtual QString statusText() const = 0;

    /// The number of frames that the camera is to send; none: as many as arrive until the end.
    virtual std::optional<quint64> frameLimit() const;
    /// True if what is done with the frames has ended, for example because it failed.
    virtual bool isOutputOver() const;
    /// Called when the stream has stopped: waits until all frames that were taken are in complete
    /// files, or wherever they go. `reason`: why the stream did not end as planned, or empty.
    virtual void finishOutput(const QString& reason);
    /// What is wrong with the output, after finishOutput(); empty: nothing.
    virtual QString outputError() const;
    /// True if every frame is counted once by what is done with the frames.
    virtual bool isOutputBalanced() const;

    /// Records the frames from now on.
    void record(std::unique_ptr<PFrameWriter> writer, const PRecordSchedule::Plan& plan);
    /// The recorder, or null.
    const PFrameRecorder* recorder() const { return m_recorder.get(); }
    /// The report on the stream; `outcome` is that of run().
    PStreamReport streamReport(const PCtlOutcome& outcome) const;

    const PCameraIdentity& camera() const { return m_camera; }
    const PCtlOptions& options() const { return m_options; }
    const PStreamTally& tally() const { return m_tally; }
    const PCameraSession& session() const { return m_session; }
    PCameraSession& session() { return m_session; }
    PStatusLine& statusLine() { return m_status; }
    Clock::time_point startTime() const { return m_start; }

private:
    PCtlOutcome start();
    PCtlOutcome startStream();
    bool isOver();
    bool isStalled() const;
    void showStatus();
    QString failureReason(bool reachedEnd) const;
    QString ledgerReason() const;

    const PCameraIdentity m_camera;
    const PCtlOptions m_options;
    PStreamTally m_tally;
    PStatusLine m_status;
    std::shared_ptr<PFrameRecorder> m_recorder;
    PFrameLedger m_ledgerAtStart;
    Clock::time_point m_start;
    Clock::time_point m_lastFrame;
    bool m_wasStarted = false;
    PCameraSession m_session; // destroyed first: frames that still arrive use the rest
};
