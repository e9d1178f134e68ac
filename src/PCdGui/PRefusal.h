// SPDX-License-Identifier: MIT
#pragma once

#include <QVariant>

/// What distinguishes a refused value from one that the device took, or rounded. A value; any
/// thread.
class PRefusal {
public:
    /// True if the device, sent a value in this range, still has the one from before. Numbers
    /// that differ by less than a step, or by no more than a hundredth, are the same here: a device
    /// that rounds to its own steps may come back to the number that it had.
    static bool isOne(const QVariant& before, const QVariant& asked, const QVariant& now,
                      const QVariant& range);
};
