// SPDX-License-Identifier: MIT
#pragma once

#include <PCd/property/typed/PDevicePropertyMinMax.h>

/// A property with a minimum, a maximum and a step whose values and ranges go into variants as they
/// are.
template <typename T, typename U>
class PDevicePropertyMinMaxTQVariantBased : public PDevicePropertyMinMax<T, U> {
public:
    using PDevicePropertyMinMax<T, U>::PDevicePropertyMinMax;

    T convertToT(QVariant value) const override { return value.value<T>(); }
    QVariant convertFromT(T value) const override { return QVariant::fromValue(value); }
    PMinMaxRange<U> convertToR(QVariant range) const override {
        return range.value<PMinMaxRange<U>>();
    }
    QVariant convertFromR(PMinMaxRange<U> range) const override {
        return QVariant::fromValue(range);
    }
};
