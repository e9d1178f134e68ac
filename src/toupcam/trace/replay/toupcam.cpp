// SPDX-License-Identifier: MIT
// The functions of the camera SDK, answered from a recording.
#include <toupcam/trace/replay/PReplayCallAnswer.h>

#define PCD_UNPACK(...) __VA_ARGS__

#define FORWARD(result, failure, name, parameters, arguments)                                      \
    result name parameters {                                                                       \
        return PReplayCallAnswer::reply(&name, #name, #arguments, PCD_UNPACK arguments);           \
    }

#include <toupcam/toupcam_functions.h>
