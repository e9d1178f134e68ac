// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/options/PViewOptions.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/program/PExitDeadline.h>

#include <PLog/PLogSink.h>

#include <QCoreApplication>

#include <memory>
#include <optional>

class PMainWindow;

/// The viewer from its start to its end. The main thread.
class PViewProgram {
    Q_DECLARE_TR_FUNCTIONS(PViewProgram)

public:
    PViewProgram();
    ~PViewProgram();

    /// Starts log, SDK, plugins, language and window. Fails if the command line is wrong, with the
    /// error; other problems are shown in the window.
    PStatus start(const PViewOptions& options);
    /// Runs until the window is closed, the picture of --grab is saved, or a termination signal
    /// arrives: recordings are then completed without a question. Returns the exit code. A camera
    /// that does not return from being closed ends the process a few seconds later.
    int run(const PViewOptions& options);

    PMainWindow& window() { return *m_window; }

private:
    PStatus startLog(const PViewOptions& options);
    PStatus startCameras(const PViewOptions& options);
    QString cameraOfProfile(const QString& path) const;
    void openCamera(const PViewOptions& options);
    void offerProfile(const QString& path);
    void restartSimulated();
    void endBySignal();
    void grab(const QString& path);
    void note(const QString& problem);

    std::optional<PExitDeadline> m_deadline; ///< first: for the destruction of the others too
    std::shared_ptr<PMemoryLogSink> m_log;
    std::shared_ptr<PStderrLogSink> m_terminal;
    QString m_problem;
    PCameraHost m_host;
    std::unique_ptr<PMainWindow> m_window;
};
