// SPDX-License-Identifier: MIT
#pragma once

// Control of the library that replays a trace: it exports the functions of the camera SDK and
// answers calls as they were answered in the recording. The file's format is in docs/trace.md.
// Texts are UTF-8 but for paths; those that are returned are valid until the next call on the same
// thread. Callable from any thread; none of them throws. A program that loads the library at run
// time recognises it by the symbol ToupcamReplay_isSimulated.

#include <toupcam/toupcam.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Reads the recording: once in a process, before any function of the SDK is called. Returns null,
/// or what is wrong with the file, with the line and what was expected there.
TOUPCAM_API(const char*) ToupcamReplay_load(const char* file);

/// The first line of the recording, a JSON object; null before it was read.
TOUPCAM_API(const char*) ToupcamReplay_header(void);

/// 1 if the recorded SDK was a simulated one, else 0.
TOUPCAM_API(int) ToupcamReplay_isSimulated(void);
/// The version that the recorded SDK reported; null if it reported none.
TOUPCAM_API(const char*) ToupcamReplay_version(void);

/// How the replay went, after the last call to the SDK, as a JSON object: "calls", how many were
/// answered; "divergences", an array of texts, the first one first; "notice", what the user should
/// know about the files, or an empty text.
TOUPCAM_API(const char*) ToupcamReplay_report(void);

#ifdef __cplusplus
}
#endif
