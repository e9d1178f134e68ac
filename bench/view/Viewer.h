// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <functional>
#include <memory>

class PCameraTabs;
class PViewCamera;
class PViewProgram;

/// Runs the main thread's event loop, without a break, until the predicate holds. False if it does
/// not by the deadline. The GUI thread.
bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline);

/// The viewer with its window, on simulated cameras that hand out ready-made colour frames. All
/// files that it needs or makes are in a folder that is removed with it. Failures are exceptions
/// with the reason. The GUI thread.
class Viewer {
public:
    /// One of its cameras.
    struct Sensor {
        QString name; ///< "20MP"
        QSize size;
        int framesASecond = 30;
    };

    /// The first call of a program with it, before there is an application: the viewer's name for
    /// the settings, and no display unless the environment names one.
    static void prepareProgram();

    /// Shows the window, without a live picture. `frames`: what record() records. With room for
    /// some gigabytes of recordings the folder is in memory.
    explicit Viewer(int frames = 1);
    /// Closes the window as the user does.
    ~Viewer();

    static Sensor small() { return {u"1MP"_qs, {1216, 816}, 30}; }
    static Sensor large() { return {u"20MP"_qs, {5440, 3648}, 30}; }
    static Sensor largest() { return {u"61MP"_qs, {9568, 6380}, 10}; }

    /// Shows the live picture of this camera, and waits for its first frames.
    void show(const Sensor& sensor);
    /// Stops the live picture that show() started.
    void pause();
    /// Records frames of the camera that is shown, without a gap, until the file is complete.
    void record();
    /// Removes that file, which must have all frames.
    void removeRecording();
    /// The number of frames that the camera that is shown has made since it was opened.
    quint64 producedFrames() const;
    /// The number of frames that fell due at that camera since its live picture was started, and
    /// that it could not deliver, because the callback with an earlier one had not returned yet.
    quint64 lostFrames() const;

private:
    PCameraTabs& tabs() const;
    PViewCamera& camera() const;

    QTemporaryDir m_folder;
    const int m_frames;
    QString m_shown; ///< the camera's id in the SDK
    std::unique_ptr<PViewProgram> m_program;
};
