// SPDX-License-Identifier: MIT
#pragma once

// Control of the simulated world behind the SDK's interface, for tests and programs that show
// simulated cameras: load scenes, plug and unplug cameras, make calls fail, and read what was
// called. All functions are plain C functions exported by the simulated libtoupcam.so, callable
// from any thread; none of them is part of the camera SDK. A program that loads the library at run
// time recognises a simulated SDK by the symbol ToupcamSim_version. Texts are UTF-8.

#include <toupcam/toupcam.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Version text of the simulator; its presence distinguishes a simulated SDK from the maker's.
TOUPCAM_API(const char*) ToupcamSim_version(void);

/// Replaces the scene by the one in this JSON text. All cameras open now are unplugged first, and
/// the faults of the old scene are discarded. Not from inside a callback.
/// Returns null on success, otherwise a text that names what is wrong and where (valid until the
/// next call on the same thread); on failure the scene is unchanged.
TOUPCAM_API(const char*) ToupcamSim_loadScene(const char* json);

/// Likewise with the text of a file, to whose folder relative picture paths in it refer.
TOUPCAM_API(const char*) ToupcamSim_loadSceneFile(const char* path);

/// Restores the built-in scene, with an empty journal and no faults. All handles must have been
/// closed before. Handles are counted from h1 again. Not from inside a callback.
TOUPCAM_API(void) ToupcamSim_reset(void);

/// Unplugs the camera with this SDK id: its stream reports the loss as the SDK does, its calls fail
/// with E_GEN_FAILURE, the hot-plug callback runs. Returns 1, or 0 if no such camera is plugged in.
TOUPCAM_API(int) ToupcamSim_unplug(const char* camId);

/// Plugs a camera of the scene in again. Returns 1, or 0 if it is not an unplugged camera.
TOUPCAM_API(int) ToupcamSim_plug(const char* camId);

/// The same two for a program that has only the serial number: unplugs the plugged-in camera with
/// this number (plugged = 0), or plugs the unplugged one in (any other value). If several have the
/// number, the first of them in the scene. If none has it, 10 bytes or more are the beginning of a
/// longer number: drivers may keep no more of it. Null or no text is the number of no camera.
/// Returns 1, or 0 if there is no such camera.
TOUPCAM_API(int) ToupcamSim_setPlugged(const char* serial, int plugged);

/// Runs the hot-plug callback once, on the SDK's hot-plug thread, without any change.
TOUPCAM_API(void) ToupcamSim_fireHotPlug(void);

/// Makes calls of `function` (for example "Toupcam_put_Option") return `result` without effect: the
/// next `count` of them after letting `skip` pass (count 0: all later ones). For Toupcam_Open the
/// result is a null handle, for Toupcam_EnumV2 the number of cameras (`result`, limited to those
/// plugged in).
TOUPCAM_API(void)
ToupcamSim_failCall(const char* function, unsigned skip, unsigned count, HRESULT result);

/// Like ToupcamSim_failCall, for calls of put_Option or get_Option with this option only.
TOUPCAM_API(void)
ToupcamSim_failOption(const char* function, unsigned option, unsigned skip, unsigned count,
                      HRESULT result);

/// Makes every call of `function` take `ms` longer (0: no longer).
TOUPCAM_API(void) ToupcamSim_delayCall(const char* function, unsigned ms);

/// Makes every call of `function` (Toupcam_PullImageV2 or Toupcam_PullStillImageV2) that copies a
/// picture report this size for it, which is not the picture's; 0 x 0 leaves the client's record as
/// it was.
TOUPCAM_API(void)
ToupcamSim_reportSize(const char* function, unsigned width, unsigned height);

/// Makes every call of Toupcam_get_Option with this option return this value, even one that the
/// option cannot have.
TOUPCAM_API(void) ToupcamSim_answerOption(unsigned option, int value);

/// The moments at which a hook is called: before an SDK call does its work, when it is about to
/// return, and before a callback of the client is called.
#define TOUPCAMSIM_BEFORE_CALL 0
#define TOUPCAMSIM_AFTER_CALL 1
#define TOUPCAMSIM_BEFORE_CALLBACK 2

/// What a hook returns before a call, whatever call it is; its returned value at other moments does
/// not matter.
#define TOUPCAMSIM_PASS 0   /* the call does its work */
#define TOUPCAMSIM_FAIL 1   /* the call returns *result, without effect */
#define TOUPCAMSIM_ABSURD 2 /* the call returns success, without effect: see ToupcamSim_setHook */

/// `name` is that of the SDK's function, or of the callback: "data", "loss" (a data callback
/// without data), "event", "exposure", "temptint" or "hotplug".
typedef int (*PTOUPCAMSIM_HOOK)(const char* name, int moment, HRESULT* result);

/// Sets the function that is called around every SDK call and before every callback, on the thread
/// of that call, with no lock of the simulator held: it may call the functions of this header, and
/// sleep. Null removes it; a call in progress may still be inside it then. For an absurd success
/// every number that the call writes is *result, a text that it writes has no end, and *result is
/// returned unless it is negative; Toupcam_EnumV2 writes nothing and returns *result, at most
/// TOUPCAM_MAX, and Toupcam_Open returns a pointer that is not a handle.
TOUPCAM_API(void) ToupcamSim_setHook(PTOUPCAMSIM_HOOK hook);

/// The number of handles that are open.
TOUPCAM_API(unsigned) ToupcamSim_openHandles(void);

/// Clears all failures, delays, reported sizes and option values.
TOUPCAM_API(void) ToupcamSim_clearFaults(void);

/// While held, the camera produces frames that never arrive (they are lost in the camera).
TOUPCAM_API(int) ToupcamSim_holdFrames(const char* camId, int hold);

/// Sends one signal to the trigger input of the camera. Returns 1 if an exposure begins, 0 if the
/// signal is missed, because the camera is exposing, or if no stream runs in external-trigger mode.
TOUPCAM_API(int) ToupcamSim_fireTrigger(const char* camId);

/// The number of signals that the camera missed because it was exposing, since its stream or the
/// external-trigger mode began; 0 if it is not open.
TOUPCAM_API(unsigned long long) ToupcamSim_missedTriggers(const char* camId);

/// Pushes one buffer with exactly this header through the data callback, on the camera's push
/// thread between two frames; waits until the callback has returned. `data` may be null, which is
/// how the SDK reports a lost camera. Returns 1, or 0 if the camera is not in push mode.
TOUPCAM_API(int)
ToupcamSim_pushRaw(const char* camId, const void* data, const BITMAPINFOHEADER* header,
                   int isSnapshot);

/// Delivers an event code to the event callback of pull mode, on the camera's event thread; waits
/// until the callback has returned. Returns 1, or 0 if the camera is not in pull mode.
TOUPCAM_API(int) ToupcamSim_fireEvent(const char* camId, unsigned event);

/// How many frames the camera has produced, and how many of them it pushed or offered to be pulled,
/// since its newest stream started. Frames that fall due while the client is busy are produced but
/// not delivered; stills and raw buffers are not counted. Returns 1, or 0 if there is no such
/// camera.
TOUPCAM_API(int)
ToupcamSim_frameCount(const char* camId, unsigned long long* produced,
                      unsigned long long* delivered);

/// The journal: one line for every SDK call since the last clear, oldest first, such as
/// "Toupcam_put_Option(h1, 17, 0) = 0". Handles are written h1, h2, … in the order of their opening
/// (h0: a null handle, h?: a pointer that was never a handle), results in decimal (for Toupcam_Open
/// the handle), output arguments with their values on return, texts in double quotes, callbacks as
/// "fn" or "null", contexts as "ctx" or "null". Returns the number of lines; if `line` is not null,
/// copies line `index` into it (at most `size` bytes with the NUL). Beyond 100,000 lines the oldest
/// are dropped.
TOUPCAM_API(unsigned) ToupcamSim_journal(unsigned index, char* line, unsigned size);
TOUPCAM_API(void) ToupcamSim_clearJournal(void);

#ifdef __cplusplus
}
#endif
