// SPDX-License-Identifier: MIT
// A camera SDK with no camera, and with nothing that marks it as simulated.
#include <toupcam/toupcam.h>

unsigned Toupcam_EnumV2(ToupcamDeviceV2[TOUPCAM_MAX]) {
    return 0;
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG, void*) {
}
