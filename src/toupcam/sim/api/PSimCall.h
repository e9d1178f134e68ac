// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/api/PSimArgument.h>
#include <toupcam/sim/hook/PSimHook.h>
#include <toupcam/sim/world/PSimWorld.h>

#include <algorithm>
#include <new>
#include <optional>
#include <string>

/// The common part of all entry points of the SDK: injected delays and failures, the check of the
/// handle, a barrier for exceptions, a line in the journal. Callable from any thread.
namespace PSimCall {

/// The text of one argument for the journal; for a handle, its name.
inline std::string written(HToupcam handle) {
    return PSimWorld::instance().handleName(handle);
}

/// The text of one argument that is not a handle.
template <typename T>
std::string written(const T& argument) {
    return PSimArgument::write(argument);
}

/// For calls with nothing that an absurd success could spoil.
inline void spoilNothing(HRESULT /*number*/) {
}

/// Does the work unless the call is set to fail; no exception leaves it. If the hook makes the call
/// an absurd success, `spoil` gets its number instead, which is also the result unless that would
/// be a failure.
template <typename Work, typename Spoil = void (*)(HRESULT)>
HRESULT guarded(const char* function, std::optional<unsigned> option, const Work& work,
                const Spoil& spoil = spoilNothing) noexcept {
    try {
        if (const auto fault = PSimHook::beforeCall(function)) {
            if (fault->answer == PSimHook::Fail)
                return fault->result;
            spoil(fault->result);
            return std::max(fault->result, S_OK);
        }
        const auto injected = PSimWorld::instance().faults().onCall(function, option);
        return injected ? *injected : work();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

/// Adds "function(arguments) = result" to the journal; an empty result is left out.
template <typename... Arguments>
void record(const char* function, const std::string& result,
            const Arguments&... arguments) noexcept {
    try {
        std::string line = std::string(function) + "(";
        const char* comma = "";
        ((line += comma + written(arguments), comma = ", "), ...);
        PSimWorld::instance().journal().add(line + ")" + (result.empty() ? "" : " = " + result));
    } catch (...) {
        // If there is no memory for its line, the journal has a gap; the client's call is not
        // affected.
    }
    PSimHook::afterCall(function);
}

/// A call that needs an open handle; `work` takes the session.
template <typename Work, typename... Arguments>
HRESULT onHandle(const char* function, std::optional<unsigned> option, HToupcam handle,
                 const Work& work, const Arguments&... arguments) noexcept {
    const auto onSession = [&]() -> HRESULT {
        const auto session = PSimWorld::instance().session(handle);
        return session ? work(*session) : E_INVALIDARG;
    };
    const auto spoil = [&arguments...]([[maybe_unused]] HRESULT number) {
        (PSimArgument::spoil(arguments, number), ...);
    };
    const HRESULT result = guarded(function, option, onSession, spoil);
    record(function, std::to_string(result), handle, arguments...);
    return result;
}

/// A call that needs an open handle of a camera that is still plugged in.
template <typename Work, typename... Arguments>
HRESULT onCamera(const char* function, HToupcam handle, const Work& work,
                 const Arguments&... arguments) noexcept {
    return onHandle(
        function, std::nullopt, handle,
        [&work](PSimSession& session) { return session.isGone() ? E_GEN_FAILURE : work(session); },
        arguments...);
}

/// A call that changes a setting; `change` takes the settings.
template <typename Change, typename... Arguments>
HRESULT changing(const char* function, HToupcam handle, const Change& change,
                 const Arguments&... arguments) noexcept {
    return onCamera(
        function, handle, [&change](PSimSession& session) { return session.change(change); },
        arguments...);
}

/// A call that reads one value through a pointer; `read` takes the session.
template <typename T, typename Read>
HRESULT reading(const char* function, HToupcam handle, T* output, const Read& read) noexcept {
    return onCamera(
        function, handle,
        [&](PSimSession& session) -> HRESULT {
            if (!output)
                return E_POINTER;
            *output = static_cast<T>(read(session));
            return S_OK;
        },
        PSimArgument::out(output));
}

} // namespace PSimCall
