// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <toupcam/toupcam.h>

/// A camera SDK that costs next to nothing, so that what a benchmark measures is the plugin: its
/// settings are plain variables, and its cameras send what the benchmark pushes. The functions here
/// are the benchmark's side of it; the plugin's side is toupcam.h. Any thread.
class PCD_EXPORT StubSdk {
public:
    /// The library's file, to be named to the plugin in TOUPCAM_LIBRARY.
    static const char* path();

    /// The number of cameras attached, one unless set; TOUPCAM_MAX at most.
    static void setCameraCount(unsigned count);

    /// Calls the data callback of the camera whose stream was started last, on this thread, with
    /// these pixels. Returns false if no camera streams.
    static bool push(const void* pixels, const BITMAPINFOHEADER& header);
};
