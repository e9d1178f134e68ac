// SPDX-License-Identifier: MIT
// A camera SDK without cameras, and without anything that marks it as simulated.
#include <toupcam/toupcam.h>

#include <cstdlib>

/// The SDK's version function. There is no version unless a test sets one.
extern "C" TOUPCAM_API(const char*) Toupcam_Version();

const char* Toupcam_Version() {
    return std::getenv("EMPTY_CAMERA_SDK_VERSION");
}

unsigned Toupcam_EnumV2(ToupcamDeviceV2[TOUPCAM_MAX]) {
    return 0;
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG, void*) {
}
