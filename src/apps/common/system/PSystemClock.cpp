// SPDX-License-Identifier: MIT
#include <apps/common/system/PSystemClock.h>

#include <sys/timex.h>

namespace {

/// The status word of the kernel's clock.
std::optional<int> readStatus(const PSystemTree& system) {
    if (system.isSystem()) {
        timex state{}; // with nothing to set, this only reads
        return adjtimex(&state) < 0 ? std::nullopt : std::optional<int>(state.status);
    }
    bool isNumber = false;
    const int status = system.readText(u"clock-status"_qs).toInt(&isNumber);
    return isNumber ? std::optional<int>(status) : std::nullopt;
}

} // namespace

PSystemClock PSystemClock::read(const PSystemTree& system) {
    PSystemClock clock;
    clock.source =
        system.readText(u"sys/devices/system/clocksource/clocksource0/current_clocksource"_qs);
    if (const std::optional<int> status = readStatus(system))
        clock.isSynchronised = (*status & STA_UNSYNC) == 0;
    return clock;
}
