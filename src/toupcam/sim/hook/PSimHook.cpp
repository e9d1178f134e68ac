// SPDX-License-Identifier: MIT
#include <toupcam/sim/hook/PSimHook.h>

#include <atomic>

namespace {

std::atomic<PSimHook::Function> hookFunction{nullptr};

int callHook(const char* name, PSimHook::Moment moment, HRESULT* result) {
    const PSimHook::Function function = hookFunction.load(std::memory_order_acquire);
    return function == nullptr ? PSimHook::Pass : function(name, moment, result);
}

} // namespace

void PSimHook::set(Function function) {
    hookFunction.store(function, std::memory_order_release);
}

std::optional<PSimHook::Fault> PSimHook::beforeCall(const char* name) {
    HRESULT result = E_FAIL;
    switch (callHook(name, BeforeCall, &result)) {
    case Fail:
        return Fault{Fail, result};
    case Absurd:
        return Fault{Absurd, result};
    default:
        return std::nullopt;
    }
}

void PSimHook::afterCall(const char* name) {
    HRESULT unused = S_OK;
    callHook(name, AfterCall, &unused);
}

void PSimHook::beforeCallback(const char* name) {
    HRESULT unused = S_OK;
    callHook(name, BeforeCallback, &unused);
}
