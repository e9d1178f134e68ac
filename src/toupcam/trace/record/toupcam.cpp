// SPDX-License-Identifier: MIT
// The functions of the camera SDK, recorded and forwarded.
#include <toupcam/trace/record/PTraceCall.h>

#define PCD_UNPACK(...) __VA_ARGS__

#define FORWARD(result, failure, name, parameters, arguments)                                      \
    result name parameters {                                                                       \
        static const auto function =                                                               \
            reinterpret_cast<decltype(&name)>(PTraceRecorder::instance().find(#name));             \
        return PTraceCall::forward(function, #name, #arguments, PCD_UNPACK arguments);             \
    }

#include <toupcam/toupcam_functions.h>
