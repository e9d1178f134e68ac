// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/system/PSystemTree.h>

#include <optional>

/// The memory of the computer. Any thread.
class PSystemMemory {
public:
    /// How many bytes programs can have without others being swapped out; nothing if the system
    /// does not report it.
    static std::optional<quint64> available(const PSystemTree& system);
};
