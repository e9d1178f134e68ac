// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/call/PCallInProgress.h>
#include <PCore/call/PCallSlot.h>
#include <PCore/call/PCallWords.h>

/// Calls of a function that may not return, for PCallWatchdog to report, and for the report of a
/// program that a fault ends. In a driver, around a call
/// of the maker's library:
///
///     static constexpr PNamedCall<int(void*, int)> named("Camera_setGain");
///     const auto inProgress = named.begin(handle, gain);
///     return Camera_setGain(handle, gain);
///
/// This costs about fifteen instructions. Texts become at most 48 bytes long; the arguments must
/// fit into PCallRecord::mostWords words. Any thread.
template <typename Function>
class PNamedCall;

/// The one for a function with this result and these arguments.
template <typename Result, typename... Arguments>
class PNamedCall<Result(Arguments...)> {
public:
    /// `name` must exist as long as the process, and so must this object.
    explicit constexpr PNamedCall(const char* name)
        : m_kind{name, &PNamedCall::write} {}

    /// Begins a call, which lasts until the result is destroyed.
    [[nodiscard]] PCallInProgress begin(Arguments... arguments) const {
        return beginIn(PCallSlot::ofThread())(arguments...);
    }
    /// The same as a function of the arguments, for the slot of the calling thread.
    [[nodiscard]] auto beginIn(PCallSlot& slot) const {
        static_assert((std::size_t(0) + ... + PCallWords<Arguments>::count) <=
                      PCallRecord::mostWords);
        return [this, &slot](Arguments... arguments) {
            PCallRecord& call = slot.present();
            [[maybe_unused]] std::size_t at = 0;
            ((PCallWords<Arguments>::keep(call, at, arguments), at += PCallWords<Arguments>::count),
             ...);
            call.begin(m_kind);
            return PCallInProgress(slot);
        };
    }

private:
    static void write([[maybe_unused]] const PCallRecord& call, [[maybe_unused]] PCallText& text) {
        [[maybe_unused]] std::size_t at = 0;
        ((text << (at == 0 ? "" : ", "), PCallWords<Arguments>::write(call, at, text),
          at += PCallWords<Arguments>::count),
         ...);
    }

    PCallRecord::Kind m_kind;
};
