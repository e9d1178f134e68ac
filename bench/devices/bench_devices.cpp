// SPDX-License-Identifier: MIT
#include <devices/DeviceFigures.h>

#include <PLog/PLog.h>

#include <figure/FigureProgram.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

// Cameras that are found, opened and idle, and their properties: what these cost apart from the
// frames. On simulated cameras.

namespace {

using Bound = Figure::Bound;

/// First, because other figures leave freed memory that would be taken again.
void addMemory() {
    FigureProgram::add({"devices/resident",
                        "resident memory of an open, idle camera",
                        {},
                        "KiB",
                        64,
                        Bound::Value,
                        9},
                       DeviceFigures::takeResident);
    FigureProgram::add(
        {"devices/heap", "heap of an open, idle camera", {}, "KiB", 64, Bound::Value, 9},
        DeviceFigures::takeHeap);
}

void addCameras() {
    FigureProgram::add({"devices/find-128", "enumerate and open 128 cameras, each",
                        "the same with 8 cameras", "ms", 1.1},
                       DeviceFigures::findCameras);
    FigureProgram::add({"devices/idle-wakeups",
                        "16 idle cameras, above a bare event loop",
                        {},
                        "wake-ups/s",
                        0,
                        Bound::Value,
                        9},
                       DeviceFigures::wakeUps);
    FigureProgram::add({"devices/idle-time",
                        "16 idle cameras, above a bare event loop",
                        {},
                        "us/s",
                        0,
                        Bound::Value,
                        9},
                       DeviceFigures::idleTime);
}

void addProperties() {
    FigureProgram::add(
        {"property/set", "set through the host, above the SDK's calls", {}, "us", 1, Bound::Value},
        DeviceFigures::setNumber);
    FigureProgram::add({"property/viewer",
                        "a change in the viewer, above one without it",
                        {},
                        "us",
                        50,
                        Bound::Value},
                       DeviceFigures::changeInViewer);
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setOrganizationName(u"pcd"_qs);
    QApplication::setApplicationName(u"pcdview"_qs);
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    PLog::installQtMessageHandler();
    PLog::setFilter(u"warning,PTDevice=off,qt=error"_qs); // as the viewer's, without its notes
    addMemory();
    addCameras();
    addProperties();
    return FigureProgram::run(argc, argv);
}
