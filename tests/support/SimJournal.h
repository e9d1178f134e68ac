// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/api/toupcamsim.h>

#include <string>
#include <vector>

/// The journal of the simulated SDK as lines. Header only: it is for test programs that link the
/// simulator. Any thread.
namespace SimJournal {

/// Line `index`, complete whatever its length; empty if there is none.
inline std::string line(unsigned index) {
    for (std::string text(256, '\0');; text.resize(text.size() * 4)) {
        ToupcamSim_journal(index, text.data(), unsigned(text.size()));
        const std::size_t length = text.find('\0');
        // A copy that fills its buffer may have been cut: read it again with a larger one.
        if (length + 1 < text.size())
            return text.substr(0, length);
    }
}

/// All lines so far, oldest first.
inline std::vector<std::string> lines() {
    std::vector<std::string> result;
    const unsigned count = ToupcamSim_journal(0, nullptr, 0);
    for (unsigned index = 0; index < count; ++index)
        result.push_back(line(index));
    return result;
}

/// The lines of calls of this function, for example "Toupcam_put_Option".
inline std::vector<std::string> calls(const std::string& function) {
    std::vector<std::string> result;
    for (std::string& text : lines()) {
        if (text.compare(0, function.size() + 1, function + '(') == 0)
            result.push_back(std::move(text));
    }
    return result;
}

inline void clear() {
    ToupcamSim_clearJournal();
}

} // namespace SimJournal
