// SPDX-License-Identifier: MIT
#pragma once

#include <figure/Figure.h>

#include <algorithm>
#include <utility>

/// What one measurement costs above another one, at least 0: each turn takes both twice, in the
/// order A B B A, so that what changes steadily has no part in it.
inline Measurement makeExcess(Measurement ours, Measurement reference) {
    return [ours = std::move(ours), reference = std::move(reference)] {
        const double first = ours();
        const double references = reference() + reference();
        return std::max(0.0, (first + ours() - references) / 2);
    };
}
