// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyTRanged.h>

/// A ranged property whose values and ranges go into variants as they are.
template <typename T, typename R>
class PDevicePropertyTRangedQVariantBased : public PDevicePropertyTRanged<T, R> {
public:
    using PDevicePropertyTRanged<T, R>::PDevicePropertyTRanged;

    T convertToT(QVariant value) const override { return value.value<T>(); }
    QVariant convertFromT(T value) const override { return QVariant::fromValue(value); }
    R convertToR(QVariant range) const override { return range.value<R>(); }
    QVariant convertFromR(R range) const override { return QVariant::fromValue(range); }
};
