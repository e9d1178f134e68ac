// SPDX-License-Identifier: MIT
#include <apps/pcdview/view/PViewStyle.h>

#include <algorithm>

PViewStyle::Levels PViewStyle::levels() const {
    Levels levels{};
    const int span = std::max(white - black, 1);
    for (int value = 0; value < int(levels.size()); ++value) {
        const int shown = ((value - black) * 255 + span / 2) / span;
        levels[std::size_t(value)] = std::uint8_t(std::clamp(shown, 0, 255));
    }
    return levels;
}
