// SPDX-License-Identifier: MIT
#include <reliability/CallHook.h>

#include <toupcam/sim/api/toupcamsim.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <map>
#include <mutex>

namespace {

// A count that no camera has; with one of billions, building the list of modes would take hours.
constexpr HRESULT absurdCount = 1000;

struct Followed {
    std::mutex mutex; // guards all below; not held while a fault acts on the simulator
    CallFaults faults;
    std::vector<bool> done;
    std::vector<SdkCall> calls;
    std::map<std::string, unsigned> numbers;
};

Followed& followed() {
    static auto* const all = new Followed; // threads of the simulator may outlive main()
    return *all;
}

std::atomic<quint64> dataCallbackCount{0};
std::atomic<quint64> balanceCallbackCount{0};
thread_local bool isPaused = false;

/// Counts a call that begins, and returns its number.
unsigned countCall(const char* name, int moment) {
    unsigned& number = followed().numbers[name];
    if (moment == TOUPCAMSIM_BEFORE_CALL)
        followed().calls.push_back({name, ++number});
    return number;
}

/// The kinds of the faults that happen now.
std::vector<const CallFault::Kind*> takeFaults(const char* name, int moment) {
    const std::lock_guard lock(followed().mutex);
    const unsigned number = countCall(name, moment);
    std::vector<const CallFault::Kind*> due;
    for (std::size_t i = 0; i < followed().faults.size(); ++i) {
        const CallFault& fault = followed().faults[i];
        if (followed().done[i] || fault.kind->moment != moment || fault.call.number != number ||
            fault.call.function != name)
            continue;
        followed().done[i] = true;
        due.push_back(fault.kind);
    }
    return due;
}

int atMoment(const char* name, int moment, HRESULT* result) {
    if (moment == TOUPCAMSIM_BEFORE_CALLBACK) {
        if (std::strcmp(name, "data") == 0)
            ++dataCallbackCount;
        else if (std::strcmp(name, "temptint") == 0)
            ++balanceCallbackCount;
        return TOUPCAMSIM_PASS;
    }
    if (isPaused)
        return TOUPCAMSIM_PASS;
    int answer = TOUPCAMSIM_PASS;
    for (const CallFault::Kind* kind : takeFaults(name, moment)) {
        if (kind->action)
            kind->action();
        if (kind->answer == TOUPCAMSIM_PASS)
            continue;
        answer = kind->answer;
        const bool isCount = std::strcmp(name, "Toupcam_get_ResolutionNumber") == 0;
        *result = answer == TOUPCAMSIM_ABSURD && isCount ? absurdCount : kind->result;
    }
    return answer;
}

} // namespace

void CallHook::begin(const CallFaults& faults) {
    {
        const std::lock_guard lock(followed().mutex);
        followed().faults = faults;
        followed().done.assign(faults.size(), false);
        followed().calls.clear();
        followed().numbers.clear();
    }
    ToupcamSim_setHook(atMoment);
}

void CallHook::end() {
    ToupcamSim_setHook(nullptr);
}

std::vector<SdkCall> CallHook::calls() {
    const std::lock_guard lock(followed().mutex);
    return followed().calls;
}

std::size_t CallHook::count(const std::string& function) {
    const std::lock_guard lock(followed().mutex);
    const auto found = followed().numbers.find(function);
    return found == followed().numbers.end() ? 0 : found->second;
}

std::size_t CallHook::happened() {
    const std::lock_guard lock(followed().mutex);
    return std::size_t(std::count(followed().done.begin(), followed().done.end(), true));
}

quint64 CallHook::dataCallbacks() {
    return dataCallbackCount;
}

quint64 CallHook::balanceCallbacks() {
    return balanceCallbackCount;
}

CallHook::Pause::Pause() {
    isPaused = true;
}

CallHook::Pause::~Pause() {
    isPaused = false;
}
