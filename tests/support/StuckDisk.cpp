// SPDX-License-Identifier: MIT
// To be loaded before a program's own libraries (LD_PRELOAD): a computer with little memory whose
// disk stops for a while. So a test sees a recorder whose disk is too slow, for the price of a few
// frames.
#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// True if this is the name that the environment variable has.
bool isStuckAt(const char* path) {
    const char* const wanted = getenv("PCD_TEST_STUCK_AT");
    const std::size_t size = wanted ? strlen(wanted) : 0;
    const std::size_t all = strlen(path);
    return size > 0 && all >= size && strcmp(path + all - size, wanted) == 0;
}

} // namespace

extern "C" {

/// Waits before the name whose end is in PCD_TEST_STUCK_AT for as long as the file
/// PCD_TEST_STUCK_WHILE exists.
int rename(const char* from, const char* to) noexcept {
    constexpr useconds_t pause = 5000;
    const char* const signal = getenv("PCD_TEST_STUCK_WHILE");
    while (signal && isStuckAt(to) && access(signal, F_OK) == 0)
        usleep(pause);
    return next<int(const char*, const char*)>("rename")(from, to);
}

/// The pages of PCD_TEST_MEMORY bytes instead of those that there are.
long sysconf(int name) noexcept {
    const auto original = next<long(int)>("sysconf");
    const char* const bytes = getenv("PCD_TEST_MEMORY");
    return bytes && name == _SC_PHYS_PAGES ? strtol(bytes, nullptr, 10) / original(_SC_PAGESIZE)
                                           : original(name);
}

} // extern "C"
