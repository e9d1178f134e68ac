// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/frame/PSimGeometry.h>
#include <toupcam/toupcam.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// The calls that are set to fail, to take longer or to return false values. Callable from any
/// thread.
class PSimFaults {
public:
    /// Calls of `function` (with this option, if one is given) return `result`: the next `count`
    /// after letting `skip` pass; count 0: all from then on.
    void fail(const std::string& function, std::optional<unsigned> option, unsigned skip,
              unsigned count, HRESULT result);
    /// Calls of `function` take `ms` longer after letting `skip` pass; 0 ms: no longer.
    void delay(const std::string& function, unsigned ms, unsigned skip = 0);
    /// Calls of `function` that copy a picture report this size for it; 0 x 0: none.
    void reportSize(const std::string& function, PSimSize size);
    /// Reading this option returns `value`.
    void answerOption(unsigned option, int value);
    void clear();

    /// Called for every SDK call: waits for the delay of the call, then returns the
    /// result it must fail with, if any.
    std::optional<HRESULT> onCall(const char* function, std::optional<unsigned> option);
    /// The size that a pull must report instead of the picture's, if any.
    std::optional<PSimSize> reportedSize(const char* function) const;
    /// The value that reading the option must return instead of the setting, if any.
    std::optional<int> replacedOption(unsigned option) const;

private:
    struct Failure {
        std::string function;
        std::optional<unsigned> option;
        unsigned skip;
        unsigned left;
        bool endless;
        HRESULT result;
    };

    struct Delay {
        unsigned ms;
        unsigned skip; ///< calls that still pass
    };

    unsigned takeDelay(const std::string& function);
    std::optional<HRESULT> takeFailure(const std::string& function, std::optional<unsigned> option);

    mutable std::mutex m_mutex; // guards all below; never held during a delay
    std::vector<Failure> m_failures;
    std::map<std::string, Delay> m_delays;
    std::map<std::string, PSimSize> m_sizes;
    std::map<unsigned, int> m_answers;
};
