// SPDX-License-Identifier: MIT
// A camera SDK with no camera, and with nothing that marks it as simulated.
#include <toupcam/toupcam.h>

#include <cstdlib>

/// As libraries have it; this one has no version unless a test gives it one.
extern "C" TOUPCAM_API(const char*) Toupcam_Version();

const char* Toupcam_Version() {
    return std::getenv("EMPTY_CAMERA_SDK_VERSION");
}

unsigned Toupcam_EnumV2(ToupcamDeviceV2[TOUPCAM_MAX]) {
    return 0;
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG, void*) {
}
