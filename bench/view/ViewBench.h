// SPDX-License-Identifier: MIT
#pragma once

#include <view/ViewFigures.h>

#include <apps/pcdview/capture/PRecordSettings.h>

#include <PCore/PStatus.h>

#include <functional>

class Viewer;

/// Measures the viewer in one situation after the other. The GUI thread.
class ViewBench {
public:
    /// Scenes and recordings go into the folder; each situation without an end of its own lasts
    /// this number of seconds.
    ViewBench(TimedApplication& application, QString folder, double seconds);

    /// Runs all measurements. Fails with the reason if the viewer could not be started.
    PStatus run();
    const ViewFigures& figures() const { return m_figures; }

private:
    PStatus watchIdle();
    PStatus watchSmall();
    PStatus watchLarge();
    PStatus record(const QString& name, const PRecordSettings& settings);

    PhaseFigures measure(const QString& name, Viewer& viewer, const std::function<bool()>& isDone);
    PhaseFigures measureForAWhile(const QString& name, Viewer& viewer);
    void settle(const QString& name, Viewer& viewer);

    TimedApplication& m_application;
    QString m_folder;
    double m_seconds;
    ViewFigures m_figures;
};
