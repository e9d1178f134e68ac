// SPDX-License-Identifier: MIT
#pragma once

#include <PCore/PExport.h>

#include <QVariant>

/// Decides whether the device refused a value, or took or rounded it. A value type; any thread.
class PCD_TEST_EXPORT PRefusal {
public:
    /// True if the device still has the earlier value after another one in this range was sent.
    /// Numbers that differ by less than a step, or by no more than a hundredth, count as equal: a
    /// device that rounds to its own steps may return to its earlier number.
    static bool isOne(const QVariant& before, const QVariant& asked, const QVariant& now,
                      const QVariant& range);
};
