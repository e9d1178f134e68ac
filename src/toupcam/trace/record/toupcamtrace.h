// SPDX-License-Identifier: MIT
#pragma once

// Control of the library that records a trace: it exports the functions of the camera SDK, forwards
// each call to the library that it was started with, and writes calls and callbacks to a file. The
// file's format is in docs/trace.md. Texts are UTF-8 but for paths; those that are returned are
// valid until the next call on the same thread. Callable from any thread; none of them throws.

#include <toupcam/toupcam.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Begins the trace: once in a process, before any function of the SDK is called. `library` is the
/// SDK's file, `file` the new file of the trace, `header` the JSON object that goes into its first
/// line, where the format and what frames hold are added. If `wholeFrames` is not 0, the pixels of
/// frames go into a file of their own: `file` and ".frames".
/// Returns null, or what is wrong; then no file remains.
TOUPCAM_API(const char*)
ToupcamTrace_start(const char* library, const char* file, const char* header, int wholeFrames);

/// Null while the trace is complete; otherwise why it ends early: the disk is full, for example.
/// The calls are forwarded still.
TOUPCAM_API(const char*) ToupcamTrace_failure(void);

#ifdef __cplusplus
}
#endif
