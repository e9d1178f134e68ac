// SPDX-License-Identifier: MIT
#pragma once

#include <figure/Figure.h>

/// The figures of devices and their properties; each function makes what its measurements need, and
/// throws std::runtime_error if it cannot. The main thread, with a QApplication.
namespace DeviceFigures {

/// Processor time of the main thread, milliseconds for each camera, to enumerate and open 128
/// cameras with their properties; the reference does the same with 8 at a time.
FigurePair findCameras();

/// KiB that an open, idle camera takes: of the heap, or of resident memory; without what the
/// simulated SDK itself takes.
FigurePair takeHeap();
FigurePair takeResident();

/// Wake-ups of any thread a second with 16 open, idle cameras, above those of a bare event loop.
FigurePair wakeUps();
/// Processor time of the process, microseconds a second, with 16 open, idle cameras, above the
/// busiest of several runs of a bare event loop.
FigurePair idleTime();

/// Microseconds that setting a number costs above the two calls of the SDK that it makes.
FigurePair setNumber();

/// Microseconds of the main thread that a changed number costs in the viewer above the same change
/// of a camera that the viewer does not show.
FigurePair changeInViewer();

} // namespace DeviceFigures
