// SPDX-License-Identifier: MIT
#include <frame/OwnCore.h>

#include <stdexcept>

namespace {

cpu_set_t readCores() {
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) != 0)
        throw std::runtime_error("the cores of this process are unknown");
    return cores;
}

/// The core with this number among those that the first thread could use: a new thread begins on
/// the one core of its creator.
int findCore(int number) {
    static const cpu_set_t all = readCores();
    int left = number % CPU_COUNT(&all);
    int core = 0;
    while (!CPU_ISSET(core, &all) || left-- > 0)
        ++core;
    return core;
}

} // namespace

OwnCore::OwnCore(int number)
    : m_before(readCores()) {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(findCore(number), &one);
    sched_setaffinity(0, sizeof one, &one);
}

OwnCore::~OwnCore() {
    sched_setaffinity(0, sizeof m_before, &m_before);
}
