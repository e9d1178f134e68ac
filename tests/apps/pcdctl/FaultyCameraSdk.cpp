// SPDX-License-Identifier: MIT
// A camera SDK with a fault, which the environment variable FAULTY_CAMERA_SDK selects.
#include <toupcam/toupcam.h>

#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

void writeNowhere() {
    static volatile int* nowhere = nullptr;
    *nowhere = 1;
}

/// The value is used after the call, so that the compiler cannot make a loop of this.
int recurseForEver(volatile int depth) {
    volatile char room[1000];
    if (depth < 0) // never
        return 0;
    room[depth % 1000] = 1;
    return recurseForEver(depth + 1) + room[0];
}

#if defined(__x86_64__)
/// With room whose size is known only here, the frame is found by the register that is lost.
[[gnu::noinline]] void loseStack(volatile std::size_t size) {
    auto* const room = static_cast<volatile char*>(__builtin_alloca(size));
    room[0] = 1;
    asm volatile("movq $1, %rbp\n\tud2");
}
#endif

} // namespace

unsigned Toupcam_EnumV2(ToupcamDeviceV2[TOUPCAM_MAX]) {
    const char* const fault = std::getenv("FAULTY_CAMERA_SDK");
    if (fault == nullptr)
        return 0;
    if (std::strcmp(fault, "pointer") == 0)
        writeNowhere();
    if (std::strcmp(fault, "thread") == 0)
        std::thread(writeNowhere).join();
#if defined(__x86_64__)
    if (std::strcmp(fault, "lost") == 0)
        loseStack(100);
#endif
    if (std::strcmp(fault, "stack") == 0)
        return unsigned(recurseForEver(0));
    std::abort();
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG, void*) {
}
