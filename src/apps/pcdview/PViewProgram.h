// SPDX-License-Identifier: MIT
#pragma once

#include <apps/pcdview/hang/PCallReporter.h>
#include <apps/pcdview/options/PViewOptions.h>

#include <apps/common/camera/PCameraHost.h>
#include <apps/common/program/PExitDeadline.h>

#include <PLog/PLogSink.h>

#include <QCoreApplication>

#include <memory>
#include <optional>

class PMainWindow;
class PViewCamera;

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
    /// that does not return from being closed ends the process a few seconds later, and so does a
    /// signal while any other call to a camera does not return, once all files are complete.
    int run(const PViewOptions& options);

    /// Runs the process that shows the calls which another viewer waits for (PHangProgram), with
    /// the options that started it. Returns the exit code.
    static int runHangNotice(const PViewOptions& options);

    PMainWindow& window() { return *m_window; }

private:
    /// A camera, if there is one, and the result of opening it.
    struct Opened {
        std::unique_ptr<PViewCamera> camera;
        PStatus status;
    };

    PStatus startLog(const PViewOptions& options);
    PStatus startCameras(const PViewOptions& options);
    QString cameraOfProfile(const QString& path) const;
    Opened openCamera(const QString& name) const;
    void showCamera(Opened opened, const QString& name);
    void offerProfile(const QString& path);
    void restartSimulated();
    void endBySignal();
    void grab(const QString& path);
    void note(const QString& problem);

    std::optional<PExitDeadline> m_deadline; ///< first: for the destruction of the others too
    std::shared_ptr<PMemoryLogSink> m_log;
    std::shared_ptr<PStderrLogSink> m_terminal;
    std::optional<PCallReporter> m_calls; ///< before the cameras
    QString m_problem;
    PCameraHost m_host;
    std::unique_ptr<PMainWindow> m_window;
};
