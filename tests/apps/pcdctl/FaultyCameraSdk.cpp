// SPDX-License-Identifier: MIT
// A camera SDK with a fault, which the environment variable FAULTY_CAMERA_SDK selects.
#include <apps/pcdctl/ExhaustedStack.h>

#include <toupcam/toupcam.h>

#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

PTOUPCAM_HOTPLUG hotPlugCallback = nullptr;
void* hotPlugContext = nullptr;

void writeNowhere() {
    static volatile int* nowhere = nullptr;
    *nowhere = 1;
}

/// On a thread that has been in the program, as those that deliver frames have.
void callBackAndRecurse() {
    hotPlugCallback(hotPlugContext);
    recurseForEver(0);
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
    if (std::strcmp(fault, "thread_stack") == 0)
        std::thread(callBackAndRecurse).join();
    std::abort();
}

void Toupcam_HotPlug(PTOUPCAM_HOTPLUG callback, void* context) {
    hotPlugCallback = callback;
    hotPlugContext = context;
}
