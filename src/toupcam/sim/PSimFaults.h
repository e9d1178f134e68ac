// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/toupcam.h>

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// Calls that shall fail or take longer. Callable from any thread.
class PSimFaults {
public:
    /// Calls of `function` (with this option, if one is given) return `result`: the next `count`
    /// after letting `skip` pass; count 0: all from then on.
    void fail(const std::string& function, std::optional<unsigned> option, unsigned skip,
              unsigned count, HRESULT result);
    /// Calls of `function` take `ms` longer; 0: no longer.
    void delay(const std::string& function, unsigned ms);
    void clear();

    /// Called for every SDK call: waits as long as the call shall be delayed, then returns the
    /// result it shall have, if it shall fail.
    std::optional<HRESULT> onCall(const char* function, std::optional<unsigned> option);

private:
    struct Failure {
        std::string function;
        std::optional<unsigned> option;
        unsigned skip;
        unsigned left;
        bool endless;
        HRESULT result;
    };

    unsigned delayOf(const std::string& function) const;
    std::optional<HRESULT> failureOf(const std::string& function, std::optional<unsigned> option);

    mutable std::mutex m_mutex;
    std::vector<Failure> m_failures;
    std::map<std::string, unsigned> m_delays;
};
